' A script computes: every member, late-bound.
Option Explicit

Dim numbers
Set numbers = CreateObject("ZEQUtility2.CZEQUtilityNumerical")

Equal "crossed limits", numbers.NumVal_Limit(5, 10, 0), 0
Equal "the lower limit", numbers.NumVal_Limit(-1, 0, 255), 0
Equal "the upper limit", numbers.NumVal_Limit(300, 0, 255), 255
OfType "results are doubles", numbers.NumVal_Limit(7, 0, 255), "Double"
Equal "within the domain", numbers.NumVal_Scale(5, 0, 10, 100, 200), 150
Equal "beyond the domain", numbers.NumVal_Scale(20, 0, 10, 100, 200), 300
Equal "a domain without extent", numbers.NumVal_Scale(5, 4, 4, 100, 200), 0
Equal "the larger", numbers.NumVal_MaxOf(1, 2), 2
Equal "the smaller", numbers.NumVal_MinOf(1, 2), 1
Equal "numbers may be texts", numbers.NumVal_MaxOf("1.5", "1"), 1.5

Equal "white compressed", numbers.Color_CompressRange(&H00FFFFFF, 64, 191), &H00BFBFBF
OfType "a colour is a long", numbers.Color_CompressRange(&H00FFFFFF, 64, 191), "Long"
Equal "a colour of the system", numbers.Color_CompressRange(&H80112233, 0, 255), &H00112233

Dim red, green, blue
numbers.Color_GetRGBComponents &H00112233, red, green, blue
Equal "the components", red & "/" & green & "/" & blue, "51/34/17"
OfType "a component is an integer", red, "Integer"
