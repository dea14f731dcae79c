// The record of an operation, its setters and its texts. Running it is tested in Execution_test.cpp.

#include <gmock/gmock.h>

#include "fileops/Recorder.h"
#include "support/Component.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

class CFileOperationTest : public testing::Test {
 protected:
  std::wstring asString(bool verbose = true, std::wstring_view lineBreaks = L"",
                        std::wstring_view indents = L"") {
    Bstr text;
    EXPECT_EQ(operation->get_AsString(verbose ? VARIANT_TRUE : VARIANT_FALSE, Bstr(lineBreaks).get(),
                                      Bstr(indents).get(), text.out()),
              S_OK);
    return std::wstring(text.view());
  }
  std::wstring parameter(short index) {
    Bstr text;
    EXPECT_EQ(operation->get_Parameter(index, text.out()), S_OK);
    return std::wstring(text.view());
  }
  long read(const wchar_t* property) {
    const Variant value = late.get(property);
    return value.type() == VT_BOOL ? value.get().boolVal : value.get().lVal;
  }
  double percent() {
    double value = -1;
    EXPECT_EQ(operation->get_PercentComplete(&value), S_OK);
    return value;
  }
  bool setMove(const wchar_t* source, const wchar_t* destination, enumOverwriteType overwrite = ovrtNo,
               enumParamType type = ptypAny) {
    VARIANT_BOOL result = VARIANT_FALSE;
    EXPECT_EQ(operation->SetMove(Bstr(source).get(), Bstr(destination).get(), overwrite, type, &result),
              S_OK);
    return result == VARIANT_TRUE;
  }
  bool setCreate(const wchar_t* path, enumOverwriteType overwrite, enumParamType type) {
    VARIANT_BOOL result = VARIANT_TRUE;
    EXPECT_EQ(operation->SetCreate(Bstr(path).get(), overwrite, type, &result), S_OK);
    return result == VARIANT_TRUE;
  }

  ComPtr<_CFileOperation> operation = create<CFileOperation, _CFileOperation>();
  Late late{operation};
};

TEST_F(CFileOperationTest, StartsUninitialised) {
  EXPECT_EQ(asString(), L"### Operation Uninitialised ###");
  EXPECT_EQ(percent(), 0);
  EXPECT_EQ(read(L"State"), exstNotStarted);
  EXPECT_EQ(read(L"OpType"), otypNull);
  EXPECT_EQ(read(L"ParameterType"), ptypAny);
  EXPECT_EQ(read(L"Overwrite"), ovrtNo);
  EXPECT_EQ(read(L"DeleteNonEmptyFolder"), ovrtNo);
  EXPECT_EQ(read(L"OverRideReadOnly"), 0);
  EXPECT_EQ(read(L"StatusHWnd"), 0);
  EXPECT_EQ(read(L"Simulating"), 0);
  EXPECT_EQ(parameter(1), L"");
  EXPECT_EQ(parameter(2), L"");
}

TEST_F(CFileOperationTest, SetsMoves) {
  EXPECT_TRUE(setMove(L"C:\\a", L"D:\\b", ovrtAsk, ptypFolder));
  EXPECT_EQ(read(L"OpType"), otypMove);
  EXPECT_EQ(parameter(1), L"C:\\a");
  EXPECT_EQ(parameter(2), L"D:\\b");
  EXPECT_EQ(read(L"ParameterType"), ptypFolder);
  EXPECT_EQ(read(L"Overwrite"), ovrtAsk);
}

TEST_F(CFileOperationTest, SetsCopies) {
  VARIANT_BOOL result = VARIANT_FALSE;
  EXPECT_EQ(operation->SetCopy(Bstr(L" x ").get(), nullptr, ovrtYes, ptypFile, &result), S_OK);
  EXPECT_EQ(result, VARIANT_TRUE);
  EXPECT_EQ(read(L"OpType"), otypCopy);
  EXPECT_EQ(parameter(1), L" x ");
  EXPECT_EQ(parameter(2), L"");
  EXPECT_EQ(read(L"ParameterType"), ptypFile);
  EXPECT_EQ(read(L"Overwrite"), ovrtYes);
}

TEST_F(CFileOperationTest, SetDeleteKeepsThePoliciesAndEmptiesTheDestination) {
  setMove(L"C:\\a", L"D:\\b", ovrtYes, ptypFile);
  operation->put_DeleteNonEmptyFolder(ovrtAsk);
  VARIANT_BOOL result = VARIANT_FALSE;
  EXPECT_EQ(operation->SetDelete(Bstr(L"C:\\c").get(), ptypAny, &result), S_OK);
  EXPECT_EQ(result, VARIANT_TRUE);
  EXPECT_EQ(read(L"OpType"), otypDelete);
  EXPECT_EQ(parameter(1), L"C:\\c");
  EXPECT_EQ(parameter(2), L"");
  EXPECT_EQ(read(L"ParameterType"), ptypAny);
  EXPECT_EQ(read(L"Overwrite"), ovrtYes);
  EXPECT_EQ(read(L"DeleteNonEmptyFolder"), ovrtAsk);
}

TEST_F(CFileOperationTest, SetsCreatesOfFilesAndFolders) {
  setMove(L"C:\\a", L"D:\\b");
  EXPECT_TRUE(setCreate(L"C:\\x", ovrtYes, ptypFile));
  EXPECT_EQ(read(L"OpType"), otypCreate);
  EXPECT_EQ(parameter(1), L"C:\\x");
  EXPECT_EQ(parameter(2), L"");
  EXPECT_EQ(read(L"ParameterType"), ptypFile);
  EXPECT_EQ(read(L"Overwrite"), ovrtYes);
  EXPECT_TRUE(setCreate(L"C:\\y", ovrtNo, ptypFolder));
  EXPECT_EQ(read(L"ParameterType"), ptypFolder);
}

TEST_F(CFileOperationTest, RefusesCreatesOfAnythingElse) {
  setMove(L"C:\\a", L"D:\\b", ovrtAsk, ptypFile);
  for (const int type : {3, 0, 4, -1}) {
    EXPECT_FALSE(setCreate(L"C:\\x", ovrtYes, static_cast<enumParamType>(type)));
    EXPECT_EQ(read(L"OpType"), otypMove);
    EXPECT_EQ(parameter(1), L"C:\\a");
    EXPECT_EQ(parameter(2), L"D:\\b");
    EXPECT_EQ(read(L"ParameterType"), ptypFile);
    EXPECT_EQ(read(L"Overwrite"), ovrtAsk);
  }
}

TEST_F(CFileOperationTest, DefaultsOfLeftOutArguments) {
  late.call(L"SetMove", Variant(L"a"), Variant(L"b"));
  EXPECT_EQ(read(L"Overwrite"), ovrtNo);
  EXPECT_EQ(read(L"ParameterType"), ptypAny);
  late.call(L"SetCopy", Variant(L"a"), Variant(L"b"), Variant(short{3}));
  EXPECT_EQ(read(L"Overwrite"), ovrtAsk);
  EXPECT_EQ(read(L"ParameterType"), ptypAny);
  operation->put_ParameterType(ptypFile);
  late.call(L"SetDelete", Variant(L"a"));
  EXPECT_EQ(read(L"ParameterType"), ptypAny);
  EXPECT_EQ(late.get(L"SetCreate", Variant(L"C:\\x")).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(read(L"Overwrite"), ovrtNo);
  EXPECT_EQ(read(L"ParameterType"), ptypFolder);
  EXPECT_EQ(textIn(late.get(L"AsString")),
            L"Creating folder C:\\x [Don't overwrite] CurrentState: Not started");
}

TEST_F(CFileOperationTest, SettersLeaveTheStateAlone) {
  operation->put_State(exstFinished_Error);
  setMove(L"a", L"b");
  EXPECT_EQ(read(L"State"), exstFinished_Error);
  setCreate(L"a", ovrtNo, ptypFile);
  EXPECT_EQ(read(L"State"), exstFinished_Error);
}

TEST_F(CFileOperationTest, PropertiesStoreAnyNumber) {
  for (const wchar_t* property :
       {L"OpType", L"Overwrite", L"DeleteNonEmptyFolder", L"ParameterType", L"State"}) {
    for (const long value : {0L, 1L, 5L, 77L, -1L, 0x7FFFFFFFL}) {
      EXPECT_EQ(late.put(property, Variant(value)).code, S_OK);
      EXPECT_EQ(read(property), value) << property;
    }
  }
  for (const long window : {-1L, 65536L, 0L}) {
    EXPECT_EQ(late.put(L"StatusHWnd", Variant(window)).code, S_OK);
    EXPECT_EQ(read(L"StatusHWnd"), window);
  }
  EXPECT_EQ(late.put(L"OverRideReadOnly", Variant(short{1})).code, S_OK);
  EXPECT_EQ(late.get(L"OverRideReadOnly").get().boolVal, VARIANT_TRUE);
}

TEST_F(CFileOperationTest, OtherParameterIndexesAreIgnored) {
  setMove(L"one", L"two");
  for (const short index : {short{0}, short{3}, short{-1}, short{32767}, short{-32768}}) {
    EXPECT_EQ(operation->put_Parameter(index, Bstr(L"other").get()), S_OK);
    EXPECT_EQ(parameter(index), L"");
  }
  EXPECT_EQ(parameter(1), L"one");
  EXPECT_EQ(parameter(2), L"two");
  EXPECT_EQ(late.put(L"Parameter", Variant(short{2}), Variant(L"changed")).code, S_OK);
  EXPECT_EQ(textIn(late.get(L"Parameter", Variant(short{2}))), L"changed");
  EXPECT_EQ(late.call(L"Parameter", Variant(40000L)).code, DISP_E_OVERFLOW);
}

TEST_F(CFileOperationTest, DescribesItself) {
  setMove(L"C:\\a.txt", L"D:\\b.txt");
  EXPECT_EQ(
      asString(true, L"\r\n", L"\t"),
      L"Moving \r\n\tC:\\a.txt\r\n to \r\n\tD:\\b.txt \r\n[Don't overwrite] \r\nCurrentState: Not started");
  EXPECT_EQ(asString(), L"Moving C:\\a.txt to D:\\b.txt [Don't overwrite] CurrentState: Not started");
  EXPECT_EQ(asString(false), L"Moving C:\\a.txt to D:\\b.txt ");
  EXPECT_EQ(textIn(late.get(L"AsString")), asString());
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(false))), asString(false));
  EXPECT_EQ(textIn(late.get(L"AsString", Variant(false), Variant(L"|"), Variant(L">"))),
            L"Moving |>C:\\a.txt| to |>D:\\b.txt ");
  Bstr text;
  EXPECT_EQ(operation->get_AsString(VARIANT_FALSE, nullptr, nullptr, text.out()), S_OK);
  EXPECT_EQ(text.view(), L"Moving C:\\a.txt to D:\\b.txt ");
}

TEST_F(CFileOperationTest, TranslatesStatesWithoutLookingAtItsOwn) {
  operation->put_State(exstFinished_OK);
  EXPECT_EQ(textIn(late.get(L"StateAsString", Variant(0L), Variant(true))), L"### State Unknown ###");
  EXPECT_EQ(textIn(late.get(L"StateAsString", Variant(0L), Variant(false))), L"######");
  EXPECT_EQ(textIn(late.get(L"StateAsString", Variant(3L), Variant(true))), L"Completed sucessfully");
  EXPECT_EQ(textIn(late.get(L"StateAsString", Variant(5L), Variant(false))), L"exstFinished_Error");
  EXPECT_EQ(late.call(L"StateAsString", Variant(1L)).code, DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(CFileOperationTest, PercentCompleteFollowsTheState) {
  for (const auto& [state, value] : {std::pair{1L, 0.0}, std::pair{3L, 100.0}, std::pair{4L, 100.0},
                                     std::pair{5L, 100.0}, std::pair{0L, 0.0}, std::pair{6L, 0.0}}) {
    for (const long type : {0L, 1L, 2L, 3L, 4L, 5L}) {
      late.put(L"State", Variant(state));
      late.put(L"OpType", Variant(type));
      EXPECT_EQ(percent(), value) << state << ' ' << type;
    }
  }
}

TEST_F(CFileOperationTest, PercentCompleteOfARunningTransferComparesFileSizes) {
  const Sandbox sandbox;
  const std::wstring quarter = sandbox.file(L"quarter", 250);
  const std::wstring whole = sandbox.file(L"whole", 1000);
  const std::wstring empty = sandbox.file(L"empty", 0);
  const std::wstring folder = sandbox.folder(L"folder");
  const std::wstring missing = sandbox.path(L"missing");
  struct Case {
    const std::wstring& source;
    const std::wstring& destination;
    double percent;
  };
  operation->put_State(exstExecuting);
  for (const auto& [source, destination, value] :
       {Case{whole, quarter, 25}, Case{whole, missing, 0}, Case{whole, folder, 0}, Case{quarter, whole, 100},
        Case{empty, missing, 0}, Case{empty, empty, 0}, Case{missing, whole, 100}, Case{folder, whole, 100},
        Case{folder, missing, 0}, Case{whole, whole, 100}}) {
    for (const auto type : {otypMove, otypCopy}) {
      setMove(source.c_str(), destination.c_str());
      operation->put_OpType(type);
      EXPECT_EQ(percent(), value);
    }
  }
  // Without a run nothing has been done of the others.
  for (const auto type : {otypDelete, otypCreate, otypNull}) {
    operation->put_OpType(type);
    EXPECT_EQ(percent(), 0);
  }
}

TEST_F(CFileOperationTest, PercentCompleteOfWhatHasNoSizeIsTheStoredProgress) {
  VARIANT_BOOL success = VARIANT_TRUE;
  EXPECT_EQ(operation->Execute(VARIANT_FALSE, &success), S_OK);
  operation->put_State(exstExecuting);
  for (const auto& [type, value] : {std::pair{0L, 0.0}, std::pair{3L, 100.0}, std::pair{4L, 100.0},
                                    std::pair{5L, 0.0}, std::pair{-1L, 0.0}}) {
    late.put(L"OpType", Variant(type));
    EXPECT_EQ(percent(), value) << type;
  }
}

TEST_F(CFileOperationTest, RefusesNullResults) {
  EXPECT_EQ(operation->SetMove(nullptr, nullptr, ovrtNo, ptypAny, nullptr), E_POINTER);
  EXPECT_EQ(operation->get_AsString(VARIANT_TRUE, nullptr, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(operation->Execute(VARIANT_FALSE, nullptr), E_POINTER);
}

TEST_F(CFileOperationTest, NoMemberLeaks) {
  const Sandbox sandbox;
  const Variant path(std::wstring_view(sandbox.path(L"file")));
  const Variant other(std::wstring_view(sandbox.path(L"other")));
  for (const wchar_t* method : {L"SetMove", L"SetCopy"}) {
    expectNoLeak(10000, [&] { late.call(method, path, other, Variant(3L), Variant(1L)); });
  }
  expectNoLeak(10000, [&] { late.call(L"SetDelete", path); });
  expectNoLeak(10000, [&] { late.call(L"SetCreate", path, Variant(2L), Variant(1L)); });
  for (const wchar_t* property :
       {L"OpType", L"Overwrite", L"OverRideReadOnly", L"DeleteNonEmptyFolder", L"ParameterType", L"State",
        L"StatusHWnd", L"AsString", L"Simulating", L"PercentComplete"}) {
    expectNoLeak(10000, [&] { late.get(property); });
  }
  for (const wchar_t* property :
       {L"Overwrite", L"OverRideReadOnly", L"DeleteNonEmptyFolder", L"State", L"StatusHWnd"}) {
    expectNoLeak(10000, [&] { late.put(property, Variant(L"2")); });
  }
  expectNoLeak(10000, [&] { late.get(L"Parameter", Variant(1L)); });
  expectNoLeak(10000, [&] { late.put(L"Parameter", Variant(2L), path); });
  expectNoLeak(10000, [&] { late.get(L"StateAsString", Variant(2L), Variant(true)); });
  expectNoLeak(10000, [&] {
    late.call(L"SetCreate", path, Variant(2L), Variant(1L));
    late.call(L"Execute", Variant(true));
    late.call(L"SetDelete", path);
    late.call(L"Execute", Variant(true));
  });
  EXPECT_EQ(late.put(L"OpType", Variant(0L)).code, S_OK);
  expectNoLeak(10000, [&] { late.put(L"ParameterType", Variant(L"2")); });
}

TEST_F(CFileOperationTest, LeaksNothing) {
  expectNoLeak(10000, [&] {
    const auto made = create<CFileOperation, _CFileOperation>();
    VARIANT_BOOL result = VARIANT_FALSE;
    const Bstr source(L"C:\\some\\longer\\path\\to\\a.txt");
    made->SetMove(source.get(), source.get(), ovrtNo, ptypAny, &result);
    made->SetCopy(source.get(), source.get(), ovrtNo, ptypAny, &result);
    made->SetCreate(source.get(), ovrtNo, ptypFolder, &result);
    made->SetDelete(source.get(), ptypAny, &result);
    made->put_Parameter(2, source.get());
    Bstr text;
    made->get_Parameter(1, text.out());
    made->get_AsString(VARIANT_TRUE, source.get(), source.get(), text.out());
    made->StateAsString(exstExecuting, VARIANT_TRUE, text.out());
  });
}

}  // namespace
}  // namespace zeq::test
