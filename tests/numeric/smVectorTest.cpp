#include "Reports.h"
#include "smVec2f.h"
#include "smVec3d.h"
#include "smVec3f.h"
#include "smVec4d.h"
#include "smVec4f.h"
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <type_traits>

namespace tessarine
{
namespace
{
template <class A, class B>
constexpr bool kSame = std::is_same_v<A, B>;

template <class TVector, class TNumber, int nCount>
constexpr bool kIsPlainValue = std::is_trivially_copyable_v<TVector>&& std::is_standard_layout_v<TVector> &&
                               sizeof(TVector) == nCount * sizeof(TNumber) &&
                               alignof(TVector) == alignof(TNumber);

static_assert(kIsPlainValue<smVec2f, float, 2> && sizeof(smVec2f) == 8);
static_assert(kIsPlainValue<smVec3f, float, 3> && sizeof(smVec3f) == 12);
static_assert(kIsPlainValue<smVec3d, double, 3> && sizeof(smVec3d) == 24);
static_assert(kIsPlainValue<smVec4f, float, 4> && sizeof(smVec4f) == 16);
static_assert(kIsPlainValue<smVec4d, double, 4> && sizeof(smVec4d) == 32);

/// What the float type and the double type give together, and each alone.
template <class TFloats, class TDoubles>
constexpr bool WidensInMixedForms()
{
    static_assert(kSame<decltype(TFloats() + TFloats()), TFloats>);
    static_assert(kSame<decltype(TFloats() + TDoubles()), TDoubles>);
    static_assert(kSame<decltype(TDoubles() + TFloats()), TDoubles>);
    static_assert(kSame<decltype(TFloats() - TFloats()), TFloats>);
    static_assert(kSame<decltype(TFloats() - TDoubles()), TDoubles>);
    static_assert(kSame<decltype(TDoubles() - TFloats()), TDoubles>);
    static_assert(kSame<decltype(TFloats() * 2.0), TFloats>);
    static_assert(kSame<decltype(2.0 * TFloats()), TFloats>);
    static_assert(kSame<decltype(TFloats() / 2.0), TFloats>);
    static_assert(kSame<decltype(TDoubles() * 2.0F), TDoubles>);
    static_assert(kSame<decltype(2 * TDoubles()), TDoubles>);
    static_assert(kSame<decltype(TDoubles() / 2), TDoubles>);
    static_assert(kSame<decltype(-TFloats()), TFloats>);
    static_assert(kSame<decltype(-TDoubles()), TDoubles>);
    static_assert(kSame<decltype(TFloats().Dot(TFloats())), float>);
    static_assert(kSame<decltype(TFloats().Dot(TDoubles())), double>);
    static_assert(kSame<decltype(TDoubles().Dot(TFloats())), double>);
    static_assert(kSame<decltype(TDoubles().Dot(TDoubles())), double>);
    static_assert(kSame<decltype(TFloats().Length()), float>);
    static_assert(kSame<decltype(TDoubles().Length()), double>);
    static_assert(std::is_convertible_v<TFloats, TDoubles>);
    static_assert(!std::is_convertible_v<TDoubles, TFloats>, "nothing narrows unseen");
    return true;
}
static_assert(WidensInMixedForms<smVec3f, smVec3d>());
static_assert(WidensInMixedForms<smVec4f, smVec4d>());
static_assert(kSame<decltype(smVec3f().Cross(smVec3f())), smVec3f>);
static_assert(kSame<decltype(smVec3f().Cross(smVec3d())), smVec3d>);
static_assert(kSame<decltype(smVec3d().Cross(smVec3f())), smVec3d>);

template <class TVector>
struct Traits;
template <>
struct Traits<smVec2f>
{
    static constexpr int kCount = 2;
};
template <>
struct Traits<smVec3f>
{
    static constexpr int kCount = 3;
    static constexpr float kZero = smVec3f_zero;
    static constexpr const char* kLength = "t > smVec3f_zero";
    static constexpr const char* kDivisor = "t > smVec3f_zero || t < - smVec3f_zero";
    static constexpr const char* kPath = "3DMath/smVec3f.h";
};
template <>
struct Traits<smVec3d>
{
    static constexpr int kCount = 3;
    static constexpr double kZero = smVec3d_zero;
    static constexpr const char* kLength = "t > smVec3d_zero";
    static constexpr const char* kDivisor = "t > smVec3d_zero || t < -smVec3d_zero";
    static constexpr const char* kPath = "3DMath/smVec3d.h";
};
template <>
struct Traits<smVec4f>
{
    static constexpr int kCount = 4;
    static constexpr float kZero = smVec4f_zero;
    static constexpr const char* kLength = "l > smVec4f_zero";
    static constexpr const char* kDivisor = "t > smVec4f_zero || t < -smVec4f_zero";
    static constexpr const char* kW = "w > smVec4f_zero || w < -smVec4f_zero";
    static constexpr const char* kPath = "3DMath/smVec4f.h";
};
template <>
struct Traits<smVec4d>
{
    static constexpr int kCount = 4;
    static constexpr double kZero = smVec4d_zero;
    static constexpr const char* kLength = "l > smVec4d_zero";
    static constexpr const char* kDivisor = "t > smVec4d_zero || t < -smVec4d_zero";
    static constexpr const char* kW = "w > smVec4d_zero || w < -smVec4d_zero";
    static constexpr const char* kPath = "3DMath/smVec4d.h";
};

template <class TVector>
using NumberOf = std::remove_cvref_t<decltype(TVector().x)>;

template <class TVector>
using Numbers = std::array<NumberOf<TVector>, static_cast<std::size_t>(Traits<TVector>::kCount)>;

template <class TVector>
Numbers<TVector> NumbersOf(const TVector& v)
{
    Numbers<TVector> numbers;
    for (int i = 0; i < Traits<TVector>::kCount; ++i)
    {
        numbers[static_cast<std::size_t>(i)] = v[i];
    }
    return numbers;
}

/// Calls the operation for each component and collects what it gives.
template <class TVector, class TOperation>
Numbers<TVector> EachComponent(TOperation operation)
{
    Numbers<TVector> numbers;
    for (std::size_t i = 0; i < numbers.size(); ++i)
    {
        numbers[i] = static_cast<NumberOf<TVector>>(operation(static_cast<int>(i)));
    }
    return numbers;
}

template <class TVector>
TVector Filled(NumberOf<TVector> first)
{
    TVector v;
    for (int i = 0; i < Traits<TVector>::kCount; ++i)
    {
        v[i] = first;
    }
    return v;
}

class RandomNumbers
{
public:
    template <class TVector>
    TVector Vector()
    {
        TVector v;
        for (int i = 0; i < Traits<TVector>::kCount; ++i)
        {
            v[i] = Number<NumberOf<TVector>>();
        }
        return v;
    }

    template <class TNumber>
    TNumber Number()
    {
        return static_cast<TNumber>(m_Distribution(m_Generator));
    }

private:
    std::mt19937 m_Generator{20240601};
    std::uniform_real_distribution<double> m_Distribution{-10.0, 10.0};
};

constexpr int kVectorRounds = 200;

// ---- what all vectors have

template <class TVector>
class AnyVector : public testing::Test
{
};
using AllVectors = testing::Types<smVec2f, smVec3f, smVec3d, smVec4f, smVec4d>;
TYPED_TEST_SUITE(AnyVector, AllVectors);

TYPED_TEST(AnyVector, StartsAsZeros)
{
    EXPECT_EQ(NumbersOf(TypeParam()), Numbers<TypeParam>{});
}

TYPED_TEST(AnyVector, GivesItsComponentsByReferenceAndIndex)
{
    TypeParam v;
    v[0] = 3;
    v[1] = 4;
    EXPECT_EQ(&v[0], &v.x);
    EXPECT_EQ(&v[1], &v.y);
    EXPECT_EQ(v.x, 3);
    EXPECT_EQ(v.y, 4);
    const TypeParam& fixed = v;
    EXPECT_EQ(&fixed[1], &v.y);
}

TYPED_TEST(AnyVector, RefusesAnIndexOutsideItsComponents)
{
    AssertionCapture reports;
    TypeParam v;
    const TypeParam& fixed = v;
    EXPECT_THROW(v[-1], AssertionFailure);
    EXPECT_THROW(v[Traits<TypeParam>::kCount], AssertionFailure);
    EXPECT_THROW(fixed[-1], AssertionFailure);
    EXPECT_THROW(fixed[Traits<TypeParam>::kCount], AssertionFailure);
}

TYPED_TEST(AnyVector, AddsAndSubtractsComponentByComponent)
{
    RandomNumbers random;
    for (int round = 0; round < kVectorRounds; ++round)
    {
        const auto a = random.Vector<TypeParam>();
        const auto b = random.Vector<TypeParam>();
        const auto sum = EachComponent<TypeParam>([&](int i) { return a[i] + b[i]; });
        const auto difference = EachComponent<TypeParam>([&](int i) { return a[i] - b[i]; });
        EXPECT_EQ(NumbersOf(a + b), sum);
        EXPECT_EQ(NumbersOf(a - b), difference);
        EXPECT_EQ(NumbersOf(-a), EachComponent<TypeParam>([&](int i) { return -a[i]; }));
        TypeParam changed = a;
        EXPECT_EQ(&(changed += b), &changed);
        EXPECT_EQ(NumbersOf(changed), sum);
        changed = a;
        EXPECT_EQ(&(changed -= b), &changed);
        EXPECT_EQ(NumbersOf(changed), difference);
    }
}

TYPED_TEST(AnyVector, ScalesFromEitherSide)
{
    RandomNumbers random;
    for (int round = 0; round < kVectorRounds; ++round)
    {
        const auto v = random.Vector<TypeParam>();
        const auto t = random.Number<NumberOf<TypeParam>>();
        const auto product = EachComponent<TypeParam>([&](int i) { return v[i] * t; });
        EXPECT_EQ(NumbersOf(v * t), product);
        EXPECT_EQ(NumbersOf(t * v), product);
        TypeParam changed = v;
        EXPECT_EQ(&(changed *= t), &changed);
        EXPECT_EQ(NumbersOf(changed), product);
    }
}

TYPED_TEST(AnyVector, DividesEachComponent)
{
    RandomNumbers random;
    for (int round = 0; round < kVectorRounds; ++round)
    {
        const auto v = random.Vector<TypeParam>();
        const auto t = random.Number<NumberOf<TypeParam>>();
        // By the divisor itself: a product with its reciprocal has other last bits.
        const auto quotient = EachComponent<TypeParam>([&](int i) { return v[i] / t; });
        EXPECT_EQ(NumbersOf(v / t), quotient);
        TypeParam changed = v;
        EXPECT_EQ(&(changed /= t), &changed);
        EXPECT_EQ(NumbersOf(changed), quotient);
    }
}

TYPED_TEST(AnyVector, SumsTheProductsFromTheLeft)
{
    RandomNumbers random;
    for (int round = 0; round < kVectorRounds; ++round)
    {
        const auto a = random.Vector<TypeParam>();
        const auto b = random.Vector<TypeParam>();
        NumberOf<TypeParam> sum = a[0] * b[0];
        NumberOf<TypeParam> squares = a[0] * a[0];
        for (int i = 1; i < Traits<TypeParam>::kCount; ++i)
        {
            sum += a[i] * b[i];
            squares += a[i] * a[i];
        }
        EXPECT_EQ(a.Dot(b), sum);
        EXPECT_EQ(a.Length(), std::sqrt(squares));
    }
}

TYPED_TEST(AnyVector, LiesInABoxWithItsCornersIncluded)
{
    const auto low = Filled<TypeParam>(-1);
    const auto high = Filled<TypeParam>(2);
    EXPECT_TRUE(TypeParam().IsInBox(low, high));
    EXPECT_TRUE(low.IsInBox(low, high));
    EXPECT_TRUE(high.IsInBox(low, high));
    for (int i = 0; i < Traits<TypeParam>::kCount; ++i)
    {
        const auto huge = std::numeric_limits<NumberOf<TypeParam>>::max();
        TypeParam below = low;
        below[i] = std::nextafter(below[i], -huge);
        EXPECT_FALSE(below.IsInBox(low, high)) << "component " << i;
        TypeParam above = high;
        above[i] = std::nextafter(above[i], huge);
        EXPECT_FALSE(above.IsInBox(low, high)) << "component " << i;
    }
}

TEST(smVec2f, DividesByZeroUnchecked)
{
    AssertionCapture reports;
    const smVec2f v = smVec2f(1.0F, -1.0F) / 0.0F;
    EXPECT_EQ(v.x, std::numeric_limits<float>::infinity());
    EXPECT_EQ(v.y, -std::numeric_limits<float>::infinity());
    EXPECT_TRUE(reports.GetExpressions().empty());
}

// ---- what the checked ones have

template <class TVector>
class CheckedVector : public testing::Test
{
protected:
    using Number = NumberOf<TVector>;

    static Number JustAbove(Number t) { return std::nextafter(t, std::numeric_limits<Number>::max()); }

    AssertionCapture m_Reports;
};
using CheckedVectors = testing::Types<smVec3f, smVec3d, smVec4f, smVec4d>;
TYPED_TEST_SUITE(CheckedVector, CheckedVectors);

TYPED_TEST(CheckedVector, HasTenMachineEpsilonsAsItsThreshold)
{
    using TNumber = NumberOf<TypeParam>;
    const auto tenEpsilons = 10 * std::numeric_limits<TNumber>::epsilon();
    EXPECT_NEAR(Traits<TypeParam>::kZero / tenEpsilons, 1.0, 1e-7);
}

TYPED_TEST(CheckedVector, ReportsAndThrowsForADivisorAtTheThreshold)
{
    using TNumber = NumberOf<TypeParam>;
    constexpr TNumber kNan = std::numeric_limits<TNumber>::quiet_NaN();
    const auto zero = Traits<TypeParam>::kZero;
    int nThrown = 0;
    for (const TNumber t : {TNumber(0), zero, -zero, zero / 2, kNan})
    {
        auto v = Filled<TypeParam>(7);
        EXPECT_THROW(v /= t, CExcpDivideZero);
        EXPECT_THROW(v / t, CExcpDivideZero);
        EXPECT_EQ(NumbersOf(v), NumbersOf(Filled<TypeParam>(7))) << "nothing is divided";
        nThrown += 2;
    }
    const std::vector<std::string> reports(static_cast<std::size_t>(nThrown), Traits<TypeParam>::kDivisor);
    EXPECT_EQ(this->m_Reports.GetExpressions(), WhereReported(reports));
}

TYPED_TEST(CheckedVector, DividesByTheFirstNumberBeyondTheThreshold)
{
    const auto t = TestFixture::JustAbove(Traits<TypeParam>::kZero);
    for (const auto divisor : {t, -t})
    {
        const TypeParam v = Filled<TypeParam>(1) / divisor;
        EXPECT_EQ(NumbersOf(v), NumbersOf(Filled<TypeParam>(1 / divisor)));
    }
    EXPECT_TRUE(this->m_Reports.GetExpressions().empty());
}

TYPED_TEST(CheckedVector, NormalizesToLengthOne)
{
    RandomNumbers random;
    for (int round = 0; round < kVectorRounds; ++round)
    {
        const auto v = random.Vector<TypeParam>();
        const auto length = v.Length();
        TypeParam unit = v;
        unit.Normalize();
        EXPECT_EQ(NumbersOf(unit), EachComponent<TypeParam>([&](int i) { return v[i] / length; }));
        EXPECT_NEAR(unit.Length(), 1.0, Traits<TypeParam>::kZero);
    }
    EXPECT_TRUE(this->m_Reports.GetExpressions().empty());
}

TYPED_TEST(CheckedVector, ReportsAZeroLengthAndDividesAllTheSame)
{
    TypeParam v;
    v.Normalize();
    EXPECT_EQ(this->m_Reports.GetExpressions(), WhereReported({Traits<TypeParam>::kLength}));
    for (int i = 0; i < Traits<TypeParam>::kCount; ++i)
    {
        EXPECT_TRUE(std::isnan(v[i])) << "0 / 0";
    }
}

TYPED_TEST(CheckedVector, ReportsALengthUnderTheThresholdAndDividesAllTheSame)
{
    TypeParam v;
    v.x = Traits<TypeParam>::kZero / 2;
    v.Normalize();
    EXPECT_EQ(this->m_Reports.GetExpressions(), WhereReported({Traits<TypeParam>::kLength}));
    EXPECT_EQ(v.x, 1) << "not left unchanged";
}

TYPED_TEST(CheckedVector, ReportsALengthAtTheThresholdOnly)
{
    TypeParam v;
    v.y = Traits<TypeParam>::kZero;
    // sqrt(y * y) gives y back here: nothing underflows, and the root of a rounded square rounds to it.
    ASSERT_EQ(v.Length(), Traits<TypeParam>::kZero);
    v.Normalize();
    EXPECT_EQ(this->m_Reports.GetExpressions(), WhereReported({Traits<TypeParam>::kLength}));

    v.y = Traits<TypeParam>::kZero * 2;
    v.Normalize();
    EXPECT_EQ(this->m_Reports.GetExpressions(), WhereReported({Traits<TypeParam>::kLength}));
}

TYPED_TEST(CheckedVector, NamesItsSourceInAReport)
{
    TypeParam().Normalize();
    EXPECT_EQ(this->m_Reports.GetPaths(), WhereReported({Traits<TypeParam>::kPath}));
}

// ---- three components

TEST(smVec3d, FiresWhenAZeroVectorIsNormalized)
{
    AssertionCapture reports;
    smVec3d v(0, 0, 0);
    v.Normalize();
    EXPECT_EQ(reports.GetExpressions(), WhereReported({"t > smVec3d_zero"}));
}

TEST(smVec3d, FiresWhenATinyVectorThatIsNotZeroIsNormalized)
{
    AssertionCapture reports;
    smVec3d v(1e-15, 0, 0); // the threshold is 2.22e-15
    v.Normalize();
    EXPECT_EQ(reports.GetExpressions(), WhereReported({"t > smVec3d_zero"}));
    EXPECT_EQ(v.x, 1.0);
}

TEST(smVec3d, TakesADivisorAboveTheThresholdOnly)
{
    AssertionCapture reports;
    smVec3d v;
    EXPECT_THROW(v /= 2.220446049250313e-15, CExcpDivideZero);
    EXPECT_EQ(reports.GetExpressions(), WhereReported({"t > smVec3d_zero || t < -smVec3d_zero"}));
    EXPECT_NO_THROW(v /= 3e-15);
    EXPECT_EQ(reports.GetExpressions(), WhereReported({"t > smVec3d_zero || t < -smVec3d_zero"}));
}

TEST(smVec3d, CrossesRightHanded)
{
    const smVec3d cross = smVec3d(1, 2, 3).Cross(smVec3d(4, 5, 7));
    // (2*7 - 3*5, 3*4 - 1*7, 1*5 - 2*4)
    EXPECT_EQ(NumbersOf(cross), (Numbers<smVec3d>{-1, 5, -3}));
    EXPECT_EQ(NumbersOf(smVec3d(1, 0, 0).Cross(smVec3d(0, 1, 0))), (Numbers<smVec3d>{0, 0, 1}));
    EXPECT_EQ(NumbersOf(smVec3f(1, 2, 3).Cross(smVec3f(4, 5, 7))), (Numbers<smVec3f>{-1, 5, -3}));
}

TEST(smVec3d, WidensAFloatBeforeItReckons)
{
    const smVec3f narrow(0.1F, 1.0F / 3.0F, -0.7F);
    const smVec3d wide(0.1, 1.0 / 3.0, -0.7);
    const smVec3d widened(static_cast<double>(0.1F), static_cast<double>(1.0F / 3.0F),
                          static_cast<double>(-0.7F));
    EXPECT_EQ(NumbersOf(smVec3d(narrow)), NumbersOf(widened));
    EXPECT_EQ(NumbersOf(narrow + wide), NumbersOf(widened + wide));
    EXPECT_EQ(NumbersOf(wide + narrow), NumbersOf(wide + widened));
    EXPECT_EQ(NumbersOf(narrow - wide), NumbersOf(widened - wide));
    EXPECT_EQ(NumbersOf(wide - narrow), NumbersOf(wide - widened));
    EXPECT_EQ(narrow.Dot(wide), widened.Dot(wide));
    EXPECT_EQ(wide.Dot(narrow), wide.Dot(widened));
    EXPECT_EQ(NumbersOf(narrow.Cross(wide)), NumbersOf(widened.Cross(wide)));
    EXPECT_EQ(NumbersOf(wide.Cross(narrow)), NumbersOf(wide.Cross(widened)));
    smVec3d changed = wide;
    changed += narrow;
    EXPECT_EQ(NumbersOf(changed), NumbersOf(wide + widened));
    changed = wide;
    changed -= narrow;
    EXPECT_EQ(NumbersOf(changed), NumbersOf(wide - widened));
}

TEST(smVec3d, ComparesAFloatWithABoxOfDoubles)
{
    const smVec3f tenth(0.1F, 0.1F, 0.1F); // lies a little above the double 0.1
    EXPECT_FALSE(tenth.IsInBox(smVec3d(), smVec3d(0.1, 0.1, 0.1)));
    EXPECT_TRUE(tenth.IsInBox(smVec3d(), smVec3d(0.1F, 0.1F, 0.1F)));
    EXPECT_TRUE(tenth.IsInBox(smVec3f(), smVec3d(1, 1, 1)));
    EXPECT_TRUE(smVec3d(0.1, 0.1, 0.1).IsInBox(smVec3f(), tenth));
}

TEST(smVec3f, ReckonsInFloats)
{
    // 1 + 2^-25 is no float: the sum rounds to 1.
    const smVec3f sum = smVec3f(1, 1, 1) + smVec3f(0x1p-25F, 0, 0);
    EXPECT_EQ(sum.x, 1.0F);
    EXPECT_EQ(smVec3f(1, 0x1p-13F, 0).Dot(smVec3f(1, 0x1p-13F, 0)), 1.0F); // 1 + 2^-26
    EXPECT_EQ(smVec3d(1, 0x1p-13, 0).Dot(smVec3f(1, 0x1p-13F, 0)), 1.0 + 0x1p-26);
}

// ---- four components

template <class TVector>
class HomogeneousVector : public testing::Test
{
};
using HomogeneousVectors = testing::Types<smVec4f, smVec4d>;
TYPED_TEST_SUITE(HomogeneousVector, HomogeneousVectors);

TYPED_TEST(HomogeneousVector, DividesByItsWWhichBecomesOne)
{
    TypeParam v(2, -6, 9, -4);
    v.Homogenize();
    EXPECT_EQ(NumbersOf(v), (Numbers<TypeParam>{-0.5, 1.5, -2.25, 1}));
}

TYPED_TEST(HomogeneousVector, ReportsAndThrowsWhenWLiesAtTheThreshold)
{
    AssertionCapture reports;
    const auto zero = Traits<TypeParam>::kZero;
    for (const auto w : {zero - zero, zero, -zero})
    {
        TypeParam v(1, 2, 3, w);
        EXPECT_THROW(v.Homogenize(), CExcpDivideZero);
        EXPECT_EQ(NumbersOf(v), (Numbers<TypeParam>{1, 2, 3, w})) << "nothing is divided";
    }
    const std::vector<std::string> expected(3, Traits<TypeParam>::kW);
    EXPECT_EQ(reports.GetExpressions(), WhereReported(expected));
}

TYPED_TEST(HomogeneousVector, NormalizesOverAllFourComponents)
{
    TypeParam v(1, -1, 1, 1); // length 2
    v.Normalize();
    EXPECT_EQ(NumbersOf(v), (Numbers<TypeParam>{0.5, -0.5, 0.5, 0.5}));
}

TEST(smVec4d, WidensAFloatBeforeItReckons)
{
    const smVec4f narrow(0.1F, 1.0F / 3.0F, -0.7F, 0.9F);
    const smVec4d wide(0.1, 1.0 / 3.0, -0.7, 0.9);
    const smVec4d widened(static_cast<double>(0.1F), static_cast<double>(1.0F / 3.0F),
                          static_cast<double>(-0.7F), static_cast<double>(0.9F));
    EXPECT_EQ(NumbersOf(smVec4d(narrow)), NumbersOf(widened));
    EXPECT_EQ(NumbersOf(narrow + wide), NumbersOf(widened + wide));
    EXPECT_EQ(NumbersOf(wide - narrow), NumbersOf(wide - widened));
    EXPECT_EQ(narrow.Dot(wide), widened.Dot(wide));
    EXPECT_EQ(wide.Dot(narrow), wide.Dot(widened));
    EXPECT_FALSE(narrow.IsInBox(smVec4d(-1, -1, -1, -1), wide)) << "0.1F lies above 0.1";
    EXPECT_TRUE(narrow.IsInBox(smVec4d(-1, -1, -1, -1), widened));
}
}
}
