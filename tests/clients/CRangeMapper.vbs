' A script maps values: every member, late-bound.
Option Explicit

Dim mapper
Set mapper = CreateObject("ZEQUtility2.CRangeMapper")

mapper.SetDomain 5, 5
Equal "equal end points of a new object", mapper.ToRange(7), 0
Set mapper = CreateObject("ZEQUtility2.CRangeMapper")
Equal "a new object maps to the same", mapper.ToRange(0.25), 0.25
Equal "the domain begins at 0", mapper.Domain(0), 0
Equal "the range ends at 1", mapper.Range(1), 1
OfType "in integers", mapper.Range(1), "Integer"
mapper.SetDomain 0, 10
mapper.SetRange 0, 100
Equal "a value in the domain's tenth", mapper.ToRange(1), 10
mapper.SetDomain 5, 5
Equal "equal end points keep the slope", mapper.ToRange(7), 20
mapper.SetDomain 0, 10
mapper.SetRange 100, 200
Equal "a value in the range", mapper.ToRange(5), 150
Equal "a value in the domain", mapper.ToDomain(150), 5
Equal "a value beyond the range", mapper.ToRange(20), 300
mapper.Range(0) = 200
mapper.Range(1) = 100
Equal "a reversed range", mapper.ToRange(10), 100
Equal "and its beginning", mapper.ToRange(0), 200
mapper.Domain(2) = 7
Equal "there is no third end point", mapper.Domain(2), 0
mapper.Domain(0) = "0"
mapper.Domain(1) = "100"
Equal "texts are numbers", mapper.ToRange("50"), 150
Equal "null stays null", mapper.ToRange(Null), Null
Equal "no number gives nothing", mapper.ToRange("many"), Empty
