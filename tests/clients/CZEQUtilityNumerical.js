// A script computes: every member, late-bound.
var numbers = new ActiveXObject("ZEQUtility2.CZEQUtilityNumerical");

equal("limits", numbers.NumVal_Limit(300, 0, 255), 255);
equal("crossed limits", numbers.NumVal_Limit(5, 10, 0), 0);
equal("the lower limit", numbers.NumVal_Limit(-1, 0, 255), 0);
equal("within the domain", numbers.NumVal_Scale(5, 0, 10, 100, 200), 150);
equal("a scaled value", numbers.NumVal_Scale(5, 0, 10, 200, 100), 150);
equal("a domain without extent", numbers.NumVal_Scale(5, 4, 4, 100, 200), 0);
equal("the larger", numbers.NumVal_MaxOf(1, 2), 2);
equal("the smaller", numbers.NumVal_MinOf(1, 2), 1);
equal("white compressed", numbers.Color_CompressRange(0xFFFFFF, 64, 191), 0xBFBFBF);
var red = 0;
numbers.Color_GetRGBComponents(0x112233, red, 0, 0);
equal("a language without references keeps its variables", red, 0);
