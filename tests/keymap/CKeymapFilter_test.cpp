#include <gmock/gmock.h>

#include "support/Component.h"
#include "support/EventLog.h"
#include "support/Leaks.h"

namespace zeq::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CKeymapFilterTest : public testing::Test {
 protected:
  void bind(const wchar_t* name, short keyCode, short shift) {
    VARIANT_BOOL added = VARIANT_FALSE;
    EXPECT_EQ(filter->AddMapping(Bstr(name).get(), Bstr(L"about it").get(), keyCode, shift, &added), S_OK);
    EXPECT_EQ(added, VARIANT_TRUE);
  }
  bool process(short keyCode, short shift, VARIANT_BOOL& processed) {
    VARIANT_BOOL bound = 1;
    EXPECT_EQ(filter->Process(keyCode, shift, &processed, &bound), S_OK);
    return bound == VARIANT_TRUE;
  }
  ComPtr<_CKeyMappings> keyMappings() {
    ComPtr<_CKeyMappings> mappings;
    EXPECT_EQ(filter->get_KeyMappings(mappings.out()), S_OK);
    return mappings;
  }
  /// What the handler of an event does with the variable that it gets.
  using Answer = std::function<void(VARIANT_BOOL& processed)>;
  HRESULT handle(DISPID event, const std::vector<VARIANT*>& arguments) {
    EXPECT_EQ(event, 1);
    EXPECT_EQ(arguments[0]->vt, VT_BYREF | VT_DISPATCH);
    EXPECT_EQ(arguments[1]->vt, VT_BYREF | VT_BOOL);
    events.push_back(textIn(Late(*arguments[0]->ppdispVal).get(L"Name")));
    if (answer) {
      answer(*arguments[1]->pboolVal);
    }
    return S_OK;
  }

  ComPtr<_CKeymapFilter> filter = create<CKeymapFilter, _CKeymapFilter>();
  std::vector<std::wstring> events;  ///< The names of the mappings that events brought.
  Answer answer;
  Sink sink{filter.get(), __uuidof(__CKeymapFilter),
            [this](DISPID event, std::vector<VARIANT*> arguments) { return handle(event, arguments); }};
};

TEST_F(CKeymapFilterTest, StartsWithoutMappings) {
  Bstr text;
  EXPECT_EQ(filter->AsString(Bstr().get(), text.out()), S_OK);
  EXPECT_EQ(text.view(), L"Keyboard mappings: ");
  EXPECT_EQ(filter->AsString(Bstr(L"> ").get(), text.out()), S_OK);
  EXPECT_EQ(text.view(), L"> Keyboard mappings: ");
}

TEST_F(CKeymapFilterTest, LeavesUnboundKeystrokesAlone) {
  bind(L"A", 65, 2);
  for (VARIANT_BOOL processed : {VARIANT_TRUE, VARIANT_FALSE}) {
    const VARIANT_BOOL before = processed;
    EXPECT_FALSE(process(66, 2, processed));
    EXPECT_FALSE(process(65, 0, processed)) << "another shift state";
    EXPECT_EQ(processed, before);
  }
  EXPECT_THAT(events, IsEmpty());
}

TEST_F(CKeymapFilterTest, TellsOfABoundKeystroke) {
  bind(L"A", 65, 2);
  answer = [](VARIANT_BOOL& processed) {
    EXPECT_EQ(processed, VARIANT_FALSE);
    processed = VARIANT_TRUE;
  };
  VARIANT_BOOL processed = VARIANT_FALSE;
  EXPECT_TRUE(process(65, 2, processed));
  EXPECT_EQ(processed, VARIANT_TRUE);
  EXPECT_THAT(events, ElementsAre(L"A"));
}

TEST_F(CKeymapFilterTest, HandsTheCallersVariableThrough) {
  bind(L"A", 65, 2);
  VARIANT_BOOL processed = VARIANT_TRUE;
  EXPECT_TRUE(process(65, 2, processed));
  EXPECT_EQ(processed, VARIANT_TRUE) << "nobody clears it";
  answer = [](VARIANT_BOOL& variable) {
    EXPECT_EQ(variable, VARIANT_TRUE);
    variable = VARIANT_FALSE;
  };
  EXPECT_TRUE(process(65, 2, processed));
  EXPECT_EQ(processed, VARIANT_FALSE);
}

TEST_F(CKeymapFilterTest, IsBoundWithoutAHandlerToo) {
  bind(L"A", 65, 2);
  sink.disconnect();
  VARIANT_BOOL processed = VARIANT_FALSE;
  EXPECT_TRUE(process(65, 2, processed));
  EXPECT_EQ(processed, VARIANT_FALSE);
}

TEST_F(CKeymapFilterTest, TakesTheFirstOfSeveral) {
  bind(L"first", 65, 2);
  bind(L"second", 65, 2);
  long count = 0;
  EXPECT_EQ(keyMappings()->get_count(&count), S_OK);
  EXPECT_EQ(count, 2);
  VARIANT_BOOL processed = VARIANT_FALSE;
  EXPECT_TRUE(process(65, 2, processed));
  EXPECT_THAT(events, ElementsAre(L"first"));
}

TEST_F(CKeymapFilterTest, KeepsWhatAMappingIsGiven) {
  bind(L"A", 65, 2);
  Bstr text;
  EXPECT_EQ(filter->AsString(Bstr().get(), text.out()), S_OK);
  EXPECT_EQ(text.view(), L"Keyboard mappings: \r\n    [CTRL A] A - about it");
}

TEST_F(CKeymapFilterTest, HandsOutItsMappings) {
  EXPECT_EQ(keyMappings().get(), keyMappings().get());
  ComPtr<_CKeyMapping> mapping;
  keyMappings()->Add(mapping.out());
  mapping->put_Name(Bstr(L"from outside").get());
  mapping->put_KeyCode(70);
  VARIANT_BOOL processed = VARIANT_FALSE;
  EXPECT_TRUE(process(70, 0, processed));
  mapping->put_KeyCode(71);
  EXPECT_FALSE(process(70, 0, processed));
  EXPECT_TRUE(process(71, 0, processed));
  EXPECT_THAT(events, ElementsAre(L"from outside", L"from outside"));
}

TEST_F(CKeymapFilterTest, EmptiesItsMappingsAtTheEnd) {
  auto other = create<CKeymapFilter, _CKeymapFilter>();
  ComPtr<_CKeyMappings> mappings;
  other->get_KeyMappings(mappings.out());
  ComPtr<_CKeyMapping> mapping;
  mappings->Add(mapping.out());
  other.reset();
  long count = -1;
  EXPECT_EQ(mappings->get_count(&count), S_OK);
  EXPECT_EQ(count, 0);
}

TEST_F(CKeymapFilterTest, AHandlerMayClearTheMappingsAndReleaseTheFilter) {
  auto other = create<CKeymapFilter, _CKeymapFilter>();
  VARIANT_BOOL result = VARIANT_FALSE;
  other->AddMapping(Bstr(L"A").get(), Bstr(L"").get(), 65, 0, &result);
  _CKeymapFilter* bare = other.get();
  const auto dropping = std::make_unique<Sink>(other.get(), __uuidof(__CKeymapFilter),
                                               [&](DISPID, const std::vector<VARIANT*>& arguments) {
                                                 ComPtr<_CKeyMappings> mappings;
                                                 bare->get_KeyMappings(mappings.out());
                                                 mappings->Clear();
                                                 (*arguments[0]->ppdispVal)->Release();
                                                 *arguments[0]->ppdispVal = nullptr;
                                                 other.reset();
                                                 return S_OK;
                                               });
  VARIANT_BOOL processed = VARIANT_FALSE;
  EXPECT_EQ(bare->Process(65, 0, &processed, &result), S_OK);
  EXPECT_EQ(result, VARIANT_TRUE);
}

TEST_F(CKeymapFilterTest, AHandlerMayProcessFurtherKeystrokes) {
  bind(L"A", 65, 0);
  bind(L"B", 66, 0);
  answer = [&](VARIANT_BOOL&) {
    if (events.size() == 1) {
      VARIANT_BOOL inner = VARIANT_FALSE;
      EXPECT_TRUE(process(66, 0, inner));
    }
  };
  VARIANT_BOOL processed = VARIANT_FALSE;
  EXPECT_TRUE(process(65, 0, processed));
  EXPECT_THAT(events, ElementsAre(L"A", L"B"));
}

TEST_F(CKeymapFilterTest, ToleratesNullPointers) {
  VARIANT_BOOL result = VARIANT_TRUE;
  EXPECT_EQ(filter->Process(65, 0, nullptr, &result), S_OK);
  EXPECT_EQ(result, VARIANT_FALSE);
}

TEST_F(CKeymapFilterTest, AnswersByName) {
  const Late late(filter);
  EXPECT_EQ(late.get(L"AddMapping", Variant(L"A"), Variant(L"B"), Variant(65L), Variant(2L)).get().boolVal,
            VARIANT_TRUE);
  answer = [](VARIANT_BOOL& processed) { processed = VARIANT_TRUE; };
  Variant processed(false);
  EXPECT_EQ(late.get(L"Process", Variant(65L), Variant(2L), byRef(processed)).get().boolVal, VARIANT_TRUE);
  EXPECT_EQ(processed.get().boolVal, VARIANT_TRUE);
  EXPECT_THAT(events, ElementsAre(L"A"));
  EXPECT_EQ(textIn(late.get(L"AsString")), L"Keyboard mappings: \r\n    [CTRL A] A - B");
  EXPECT_EQ(Late(late.get(L"KeyMappings").get().pdispVal).get(L"count").get().lVal, 1);
}

TEST_F(CKeymapFilterTest, LeaksNothing) {
  expectNoLeak(500, [&] {
    bind(L"A", 65, 2);
    VARIANT_BOOL processed = VARIANT_FALSE;
    process(65, 2, processed);
    keyMappings()->Clear();
    events.clear();
  });
}

}  // namespace
}  // namespace zeq::test
