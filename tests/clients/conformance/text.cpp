// Texts, numbers, collections and sorting.

#include "Scenario.h"

namespace conformance {
namespace {

const Scenario collectionScenario(L"Collection", [] {
  const Object<_Collection> list(L"Collection");
  CALL(list, Add, L"b", L"second", Value::missing(), Value::missing());
  CALL(list, Add, L"a", L"first", L"second", Value::missing());
  equal(L"items are counted", GET(list, Count), 2);
  equal(L"an item goes before another", GET(list, Item, 1), L"a");
  equal(L"keys ignore case", GET(list, Item, L"SECOND"), L"b");
  equal(L"there is an enumerator", GET(list, NewEnum).get().vt == VT_UNKNOWN, true);
  CALL(list, Remove, L"first");
  equal(L"an item is removed", GET(list, Count), 1);
});

const Scenario stringsScenario(L"CZEQUtilityStrings", [] {
  const Object<_CZEQUtilityStrings> text(L"CZEQUtilityStrings");
  equal(L"a plural", CALL(text, Str_Plural, 2, L"file"), L"files");
  equal(L"a comparison", CALL(text, Str_Compare, L" A ", L"a", false, true), true);
  Value original = L"a%N%b";
  Value keyword = L"%N%";
  Value replacement = L"x";
  equal(L"a keyword", CALL(text, Str_ReplaceSimpleKeyWord, ref(original), ref(keyword), ref(replacement)),
        L"axb");
  equal(L"the original stays", original, L"a%N%b");
  equal(L"a video time", CALL(text, StrUtil_MakeTimeCodeString, 3725.25, vtsfHHMMSSSS, 25.0), L"01:02:05.25");
  equal(L"a time code", CALL(text, StrUtil_SecsToTimeCodeStr, 3725.25), L"01:02:05:06");
  equal(L"a time by a pattern", CALL(text, StrUtil_SecsToTimeStr, 3661.0, L"hh:nn:ss", false), L"01:01:01");
  equal(L"a size", CALL(text, StrUtil_KiloMegaGigaString, 1024.0, fsuIsBytes), L"1.0 KB");
  equal(L"a key", CALL(text, StrUtil_KeyCodeToString, 112, 6, true), L"CTRL-ALT F1");
  equal(L"a key as numbers", CALL(text, StrUtil_KeyCodeToNumericString, 112, 2), L"Key-112-2");
  equal(L"a URL", CALL(text, URLEncode, L"a b/c"), L"a%20b%2Fc");
});

const Scenario splitterScenario(L"CStringSplitter", [] {
  const Object<_CStringSplitter> fields(L"CStringSplitter");
  equal(L"new objects pass over empty fields", GET(fields, CountEmptyFields), false);
  equal(L"new objects trim", GET(fields, TrimFields), true);
  PUT(fields, FieldSep, L";");
  PUT(fields, Record, L"a; b;");
  equal(L"the separator is kept", GET(fields, FieldSep), L";");
  equal(L"the text is kept", GET(fields, Record), L"a; b;");
  equal(L"fields are counted", GET(fields, count), 2);
  equal(L"a field", GET(fields, Field, 2), L"b");
  PUT(fields, CountEmptyFields, true);
  PUT(fields, TrimFields, false);
  equal(L"an empty field", GET(fields, count), 3);
  equal(L"a field with its blank", GET(fields, Field, 2), L" b");
  equal(L"there is an enumerator", GET(fields, NewEnum).get().vt == VT_UNKNOWN, true);
  equal(L"another text", CALL(fields, Split, L"x,y", L",", true, true), 2);
});

const Scenario numericalScenario(L"CZEQUtilityNumerical", [] {
  const Object<_CZEQUtilityNumerical> numbers(L"CZEQUtilityNumerical");
  equal(L"a limit", CALL(numbers, NumVal_Limit, 300.0, 0.0, 255.0), 255);
  equal(L"a scale", CALL(numbers, NumVal_Scale, 5.0, 0.0, 10.0, 100.0, 200.0), 150);
  equal(L"the larger", CALL(numbers, NumVal_MaxOf, 1.0, 2.0), 2);
  equal(L"the smaller", CALL(numbers, NumVal_MinOf, 1.0, 2.0), 1);
  equal(L"a colour", CALL(numbers, Color_CompressRange, 0x00FFFFFF, 64, 191), 0x00BFBFBF);
  Value red;
  Value green;
  Value blue;
  red = short{0};
  green = short{0};
  blue = short{0};
  CALL(numbers, Color_GetRGBComponents, 0x00112233, ref(red), ref(green), ref(blue));
  equal(L"red comes back", red, 0x33);
  equal(L"green comes back", green, 0x22);
  equal(L"blue comes back", blue, 0x11);
});

const Scenario collectionsScenario(L"CZEQUtilityCollections", [] {
  const Object<_CZEQUtilityCollections> collections(L"CZEQUtilityCollections");
  const Object<_Collection> list(L"Collection");
  const Object<_CFakeDrive> drive(L"CFakeDrive");
  Value own = list;
  Value item = drive;
  equal(L"an object is added", CALL(collections, Collection_Add, ref(own), ref(item), L"C:"), true);
  equal(L"but once", CALL(collections, Collection_Add, ref(own), ref(item), L"c:"), false);
  equal(L"it is there", CALL(collections, Collection_ContainsKey, ref(own), L"C:"), true);
  equal(L"it is removed", CALL(collections, Collection_Remove, ref(own), L"C:"), true);
  equal(L"but once", CALL(collections, Collection_Remove, ref(own), L"C:"), false);
  CALL(collections, Collection_Clear, ref(own));
  equal(L"nothing is left", GET(list, Count), 0);
});

/// An array of variants that holds what is given.
Value arrayOf(std::initializer_list<Value> items) {
  Value array;
  array.raw()->vt = VT_ARRAY | VT_VARIANT;
  array.raw()->parray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(items.size()));
  LONG index = 0;
  for (Value item : items) {
    SafeArrayPutElement(array.get().parray, &index, item.raw());
    ++index;
  }
  return array;
}

Value itemOf(const Value& array, LONG index) {
  Value item;
  SafeArrayGetElement(array.get().parray, &index, item.raw());
  return item;
}

const Scenario sortingScenario(L"CZEQUtilitySorting", [] {
  const Object<_CZEQUtilitySorting> sorting(L"CZEQUtilitySorting");
  Value ranks = arrayOf({3, 1, 2});
  Value names = arrayOf({L"c", L"a", L"b"});
  Value low = 0;
  Value high = 2;
  CALL(sorting, QuickSortVariants, ref(ranks), ref(names), ref(low), ref(high));
  equal(L"the first rank", itemOf(ranks, 0), 1);
  equal(L"the last rank", itemOf(ranks, 2), 3);
  equal(L"the first name", itemOf(names, 0), L"a");
  equal(L"the last name", itemOf(names, 2), L"c");
});

const Scenario mapperScenario(L"CRangeMapper", [] {
  const Object<_CRangeMapper> mapper(L"CRangeMapper");
  CALL(mapper, SetDomain, 0, 10);
  CALL(mapper, SetRange, 100, 200);
  equal(L"a value in the range", CALL(mapper, ToRange, 5), 150);
  equal(L"a value in the domain", CALL(mapper, ToDomain, 150), 5);
  PUT(mapper, Domain, 1, 20);
  PUT(mapper, Range, 0, 0);
  equal(L"the domain's end is kept", GET(mapper, Domain, 1), 20);
  equal(L"the range's begin is kept", GET(mapper, Range, 0), 0);
});

}  // namespace
}  // namespace conformance
