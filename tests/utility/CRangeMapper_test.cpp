#include <gmock/gmock.h>

#include "support/ClientValue.h"
#include "support/Component.h"
#include "support/Leaks.h"
#include "utility/Values.h"

namespace zeq::test {
namespace {

class CRangeMapperTest : public testing::Test {
 protected:
  template <class D0, class D1>
  void setDomain(D0 d0, D1 d1) {
    EXPECT_EQ(mapper->SetDomain(value(d0).get(), value(d1).get()), S_OK);
  }
  template <class R0, class R1>
  void setRange(R0 r0, R1 r1) {
    EXPECT_EQ(mapper->SetRange(value(r0).get(), value(r1).get()), S_OK);
  }
  template <class X>
  Variant toRange(X x) {
    Variant result;
    EXPECT_EQ(mapper->ToRange(value(x).get(), result.out()), S_OK);
    return result;
  }
  template <class X>
  Variant toDomain(X x) {
    Variant result;
    EXPECT_EQ(mapper->ToDomain(value(x).get(), result.out()), S_OK);
    return result;
  }
  static double number(const Variant& variant) { return inType(VT_R8, variant).get().dblVal; }

  ComPtr<_CRangeMapper> mapper = create<CRangeMapper, _CRangeMapper>();
  Late late{mapper};
};

TEST_F(CRangeMapperTest, StartsAsIdentity) {
  for (short index = 0; index <= 1; ++index) {
    for (const wchar_t* name : {L"Domain", L"Range"}) {
      const Variant point = late.get(name, value(index));
      EXPECT_EQ(point.type(), VT_I2);
      EXPECT_EQ(point.get().iVal, index);
    }
  }
  EXPECT_EQ(number(toRange(0.25)), 0.25);
  EXPECT_EQ(number(toDomain(-3)), -3);
}

TEST_F(CRangeMapperTest, MapsBothWays) {
  setDomain(0, 10);
  setRange(100, 200);
  EXPECT_EQ(number(toRange(5)), 150);
  EXPECT_EQ(number(toDomain(150)), 5);
  EXPECT_EQ(number(toRange(20)), 300);
  setRange(200, 100);
  EXPECT_EQ(number(toRange(0)), 200);
  EXPECT_EQ(number(toRange(10)), 100);
  EXPECT_EQ(number(late.get(L"ToDomain", value(150))), 5);
  EXPECT_EQ(late.call(L"SetDomain", value(0), value(100)).code, S_OK);
  EXPECT_EQ(late.call(L"SetRange", value(0), value(1)).code, S_OK);
  EXPECT_EQ(number(late.get(L"ToRange", value(50))), 0.5);
}

TEST_F(CRangeMapperTest, KeepsSlopesOverEqualEndPoints) {
  setDomain(5, 5);
  EXPECT_EQ(number(toRange(7)), 0);  // The slope that was never computed acts as 0.
  setDomain(0, 10);
  setRange(0, 100);
  EXPECT_EQ(number(toRange(1)), 10);
  setDomain(5, 5);
  EXPECT_EQ(number(toRange(7)), 20);
  EXPECT_EQ(number(toDomain(7)), 5);
  setRange(3, 3);
  EXPECT_EQ(number(toDomain(9)), 5);
}

TEST_F(CRangeMapperTest, ComputesSlopesOnlyAfterAChange) {
  setDomain(0, 10);
  EXPECT_EQ(number(toRange(5)), 0.5);
  EXPECT_EQ(late.put(L"Range", value(1), value(100)).code, S_OK);
  EXPECT_EQ(number(toRange(5)), 50);
  EXPECT_EQ(late.put(L"Domain", value(1), value(100)).code, S_OK);
  EXPECT_EQ(number(toRange(5)), 5);
}

TEST_F(CRangeMapperTest, KeepsEndPointsAsTheyAreSet) {
  Variant variable = value(L"0");
  EXPECT_EQ(late.call(L"SetDomain", byRef(variable), value(2.5)).code, S_OK);
  variable = value(7);
  EXPECT_EQ(textIn(late.get(L"Domain", value(0))), L"0");
  EXPECT_EQ(late.get(L"Domain", value(1)).type(), VT_R8);
  EXPECT_EQ(mapper->SetRange(Variant::null().get(), Variant().get()), S_OK);
  EXPECT_EQ(late.get(L"Range", value(0)).type(), VT_NULL);
  EXPECT_EQ(late.get(L"Range", value(1)).type(), VT_EMPTY);
}

TEST_F(CRangeMapperTest, IgnoresOtherEndPoints) {
  for (const short index : {short{2}, short{-1}}) {
    EXPECT_EQ(mapper->put_Domain(index, value(7).get()), S_OK);
    EXPECT_EQ(mapper->put_Range(index, value(7).get()), S_OK);
    Variant point;
    EXPECT_EQ(mapper->get_Domain(index, point.out()), S_OK);
    EXPECT_EQ(point.type(), VT_I2);
    EXPECT_EQ(point.get().iVal, 0);
    EXPECT_EQ(mapper->get_Range(index, point.out()), S_OK);
    EXPECT_EQ(point.type(), VT_I2);
    EXPECT_EQ(point.get().iVal, 0);
  }
  EXPECT_EQ(number(toRange(3)), 3);
}

TEST_F(CRangeMapperTest, GivesNullForNull) {
  EXPECT_EQ(toRange(Variant::null()).type(), VT_NULL);
  EXPECT_EQ(toDomain(Variant::null()).type(), VT_NULL);
  setDomain(Variant::null(), 5);
  EXPECT_EQ(toRange(3).type(), VT_NULL);
}

TEST_F(CRangeMapperTest, GivesEmptyForWhatIsNoNumber) {
  EXPECT_EQ(toRange(L"many").type(), VT_EMPTY);
  EXPECT_EQ(toDomain(Variant::missing()).type(), VT_EMPTY);
  setDomain(L"a", L"b");
  EXPECT_EQ(toRange(3).type(), VT_EMPTY);
  setDomain(L"1", L"1.0");  // Different texts of one number.
  EXPECT_EQ(toRange(3).type(), VT_EMPTY);
  setDomain(0, 10);
  EXPECT_EQ(number(toRange(5)), 0.5);
}

TEST_F(CRangeMapperTest, CountsEmptyAsZero) {
  setRange(10, 20);
  EXPECT_EQ(number(toRange(Variant())), 10);
  setDomain(Variant(), 10);
  EXPECT_EQ(number(toRange(5)), 15);
}

TEST_F(CRangeMapperTest, ComputesWithNumericTexts) {
  setDomain(L"0", L"10");
  setRange(L"100", L"200");
  EXPECT_EQ(number(toRange(L"5")), 150);
  EXPECT_EQ(number(toDomain(L"150")), 5);
}

TEST_F(CRangeMapperTest, ComputesWithOtherTypesOfNumbers) {
  const Variant five = value(5);
  for (const VARTYPE type : {VT_UI1, VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_DECIMAL, VT_DATE}) {
    setDomain(inType(type, value(0)), inType(type, value(10)));
    setRange(inType(type, value(100)), inType(type, value(200)));
    EXPECT_EQ(number(toRange(inType(type, five))), 150) << type;
    EXPECT_EQ(number(toDomain(inType(type, value(150)))), 5) << type;
  }
  setDomain(false, true);
  setRange(0, 10);
  EXPECT_EQ(number(toRange(true)), 10);
}

TEST_F(CRangeMapperTest, GrowsWhereIntegersOverflow) {
  setDomain(value(short{-30000}), value(short{30000}));
  setRange(value(short{-30000}), value(short{30000}));
  EXPECT_EQ(number(toRange(short{30000})), 30000);
  setDomain(-2000000000, 2000000000);
  setRange(0, 4);
  EXPECT_EQ(number(toRange(2000000000)), 4);
  setDomain(0, 1);
  setRange(0, 2000000000);
  EXPECT_EQ(number(toRange(2000000000)), 4e18);
  setRange(inType(VT_R4, value(3e38)), inType(VT_R4, value(-3e38)));
  EXPECT_NEAR(number(toRange(1)) / -3e38, 1, 1e-6);
}

TEST_F(CRangeMapperTest, GivesEmptyWhereCurrencyOverflows) {
  setRange(inType(VT_CY, value(0)), inType(VT_CY, value(9e14)));
  EXPECT_EQ(toRange(inType(VT_CY, value(9e14))).type(), VT_EMPTY);
}

TEST_F(CRangeMapperTest, LeaksNothing) {
  expectNoLeak(50, [] {
    const Late object{create<CRangeMapper, _CRangeMapper>()};
    object.call(L"SetDomain", value(L"0"), value(L"10"));
    object.call(L"ToRange", value(L"5"));
    object.call(L"ToRange", value(L"many"));
  });
}

TEST_F(CRangeMapperTest, AValueThatReplacesTheEndPointsIsMappedByTheOldOnes) {
  setDomain(L"0", L"10");
  setRange(0, 1);
  const Variant five = ClientValue::make([&] {
    setDomain(L"5", L"6");
    return Variant(5L);
  });
  Variant result;
  EXPECT_EQ(mapper->ToRange(five.get(), result.out()), S_OK);
  EXPECT_EQ(number(result), 0.5);
  EXPECT_EQ(number(toRange(6)), 1);
}

TEST_F(CRangeMapperTest, LivesUntilTheEndOfTheCallThatReleasesIt) {
  const auto last = std::make_unique<ComPtr<_CRangeMapper>>(create<CRangeMapper, _CRangeMapper>());
  _CRangeMapper* const borrowed = last->get();
  {
    const Variant point = ClientValue::make([] { return Variant(0L); }, [&] { last->reset(); });
    EXPECT_EQ(borrowed->put_Domain(0, point.get()), S_OK);
  }
  EXPECT_EQ(borrowed->SetDomain(value(0).get(), value(1).get()), S_OK);
  EXPECT_FALSE(*last);
}

}  // namespace
}  // namespace zeq::test
