// A script maps values: every member, late-bound.
var mapper = new ActiveXObject("ZEQUtility2.CRangeMapper");

equal("a new object maps to the same", mapper.ToRange(0.25), 0.25);
mapper = new ActiveXObject("ZEQUtility2.CRangeMapper");
mapper.SetDomain(5, 5);
equal("equal end points of a new object", mapper.ToRange(7), 0);
mapper.SetDomain(0, 10);
mapper.SetRange(0, 100);
equal("a value in the domain's tenth", mapper.ToRange(1), 10);
mapper.SetDomain(5, 5);
equal("equal end points keep the slope", mapper.ToRange(7), 20);
mapper.SetDomain(0, 10);
mapper.SetRange(200, 100);
equal("a reversed range", mapper.ToRange(0) - mapper.ToRange(10), 100);
mapper.SetRange(100, 200);
equal("a value in the range", mapper.ToRange(5), 150);
equal("a value in the domain", mapper.ToDomain(150), 5);
equal("a value beyond the range", mapper.ToRange(20), 300);
mapper.Domain(1) = 100;
mapper.Range(0) = 0;
equal("the domain as it was set", mapper.Domain(1), 100);
equal("the range as it was set", mapper.Range(0), 0);
equal("a value between them", mapper.ToRange(50), 100);
equal("there is no third end point", mapper.Range(2), 0);
equal("null stays null", mapper.ToRange(null), null);
equal("no number gives nothing", mapper.ToRange("many"), undefined);
