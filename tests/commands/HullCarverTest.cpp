#include "HullCarver.h"
#include "Distance2D.h"
#include "IAProjectionCommand.h"
#include "LiteralField.h"
#include "LiteralSilhouette.h"
#include "Silhouettes.h"
#include <algorithm>
#include <bit>
#include <gmock/gmock.h>
#include <limits>

namespace tessarine
{
namespace
{
/// A silhouette's 2D field, and the image that it is of.
struct Layers
{
    Layers(int imageWidth, int imageHeight, const std::vector<std::uint8_t>& image)
        : width(imageWidth), height(imageHeight), entries(image.size() / 3)
    {
        BuildDistance2D(width, height, image.data(), entries.data());
    }

    SilhouetteDistance GetSilhouette() const { return {width, height, entries.data()}; }

    int width;
    int height;
    std::vector<std::int32_t> entries;
};

Layers MakePlainLayers(int width, int height, std::uint8_t byte)
{
    return {width, height,
            std::vector<std::uint8_t>(3 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                                      byte)};
}

/// A square of object pixels, `margin` from each border of the image.
Layers MakeSquareLayers(int side, int margin)
{
    Layers layers = MakePlainLayers(side, side, 0);
    std::vector<std::uint8_t> image(3 * layers.entries.size());
    for (int y = margin; y < side - margin; ++y)
    {
        const auto first = image.begin() + std::ptrdiff_t{3} * (y * side + margin);
        std::fill(first, first + std::ptrdiff_t{3} * (side - 2 * margin), std::uint8_t{255});
    }
    return {side, side, image};
}

/// Along z, moved a little, so that no place is near a bound between pixels.
smMatrix44d GetSettledView()
{
    smMatrix44d view(true);
    view.At(3, 0) = view.At(3, 1) = 0.005;
    return view;
}

float GetValueInOneView(const Layers& layers, int i, int j, int k)
{
    DistanceField field;
    HullCarver(field).AddView(GetSettledView(), layers.GetSilhouette());
    return field.GetValue(i, j, k);
}

testing::AssertionResult IsSameInEveryBit(const std::vector<float>& a, const std::vector<float>& b)
{
    const auto hasSameBits = [](float x, float y)
    { return std::bit_cast<std::uint32_t>(x) == std::bit_cast<std::uint32_t>(y); };
    const auto [first, second] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(), hasSameBits);
    if (first == a.end() && second == b.end())
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "sample " << first - a.begin() << ": " << *first << ", literally " << *second;
}

TEST(DistanceField, StartsOutsideOnItsFacesAlone)
{
    const DistanceField field;
    EXPECT_EQ(field.GetValues().size(), 61U * 61 * 201);
    EXPECT_EQ(field.GetValues(), LiteralField().GetValues());
    EXPECT_EQ(field.GetValue(0, 30, 100), 1000.0F);
    EXPECT_EQ(field.GetValue(30, 60, 100), 1000.0F);
    EXPECT_EQ(field.GetValue(30, 30, 200), 1000.0F);
    EXPECT_EQ(field.GetValue(1, 59, 199), -1000.0F);
}

TEST(DistanceField, LooksUpTheCellTowardItsLowCorner)
{
    DistanceField field;
    field.SetValue(31, 32, 103, 5.0F);
    EXPECT_EQ(field.GetValueAt({0.05, 0.1, 0.15}),
              5.0F); // (x + 1.2) / 0.04 = 31.25, 32.5; (z + 4) / 0.04 = 103.75
    EXPECT_EQ(field.GetValueAt({1.2, 1.2, 1.0}), 1000.0F); // the last corner is in the grid
    EXPECT_THROW(field.GetValueAt({0.0, 0.0, 4.1}), AssertionFailure);
    EXPECT_THROW(field.GetValueAt({std::numeric_limits<double>::quiet_NaN(), 0.0, 0.0}), AssertionFailure);
}

TEST(HullCarver, TakesEverythingFromAnEmptyImage)
{
    DistanceField field;
    const Layers layers = MakePlainLayers(80, 60, 0);
    HullCarver(field).AddView(smMatrix44d(true), layers.GetSilhouette());
    EXPECT_EQ(field.GetValues(), std::vector<float>(field.GetValues().size(), 1000.0F));
}

TEST(HullCarver, LeavesTheFarInsideUnseen)
{
    EXPECT_EQ(GetValueInOneView(MakeSquareLayers(240, 60), 30, 30, 100), -1000.0F); // 60 layers inside
}

TEST(HullCarver, MeasuresInUnitsOfTheWidth)
{
    // 100 pixels a unit; the square reaches from 60 to 179. From pixel 176, where x is 0.565, the way out is straight.
    // From 184 it first goes down and left, to (179, y + 5), and two pixels back up in the rings: 5 across, 3 down.
    const Layers layers = MakeSquareLayers(240, 60);
    EXPECT_FLOAT_EQ(GetValueInOneView(layers, 46, 30, 100), static_cast<float>(std::sqrt(34.0)) / 100.0F);
    EXPECT_FLOAT_EQ(GetValueInOneView(layers, 44, 30, 100), -0.03F);
    EXPECT_EQ(GetValueInOneView(layers, 52, 30, 100), 1000.0F); // pixel 208, 29 layers outside
}

TEST(HullCarver, TakesWhatLiesBesideTheImageForOutside)
{
    // The last column counts as outside; the view is moved by half its width.
    smMatrix44d view(true);
    view.At(3, 0) = 1.2;
    DistanceField field;
    const Layers layers = MakePlainLayers(240, 240, 255);
    HullCarver(field).AddView(view, layers.GetSilhouette());
    EXPECT_EQ(field.GetValue(31, 30, 100), 1000.0F);
    EXPECT_LT(field.GetValue(29, 30, 100), 0.5F);
}

TEST(HullCarver, TakesPlacesThatAreNoNumbersForOutside)
{
    smMatrix44d view(true);
    view.At(0, 0) = std::numeric_limits<float>::max();
    view.At(1, 0) = -std::numeric_limits<double>::max(); // infinity less infinity, and beyond all integers
    DistanceField field;
    HullCarver(field).AddView(view, MakePlainLayers(240, 240, 255).GetSilhouette());
    EXPECT_EQ(field.GetValue(5, 5, 100), 1000.0F);
}

TEST(HullCarver, KeepsTheLargestOfTwoViews)
{
    const Layers wide = MakeSquareLayers(240, 60);
    const Layers narrow = MakeSquareLayers(240, 68);
    for (const auto& [first, second] : {std::pair(&wide, &narrow), std::pair(&narrow, &wide)})
    {
        DistanceField field;
        HullCarver carver(field);
        carver.AddView(GetSettledView(), first->GetSilhouette());
        carver.AddView(GetSettledView(), second->GetSilhouette());
        EXPECT_GE(field.GetValue(44, 30, 100), 0.05F); // pixel 176, and the narrow one ends at 171
    }
}

TEST(HullCarver, GivesDistanceZeroWhereATraceLeadsNowhere)
{
    // The border continues the layers from inside, and nothing else is there: entries of -1 have no way down.
    const std::vector<std::int32_t> layers(25, -1);
    EXPECT_EQ(SilhouetteDistance(5, 5, layers.data()).GetDistance(2, 2), 0.0F);
    const std::vector<std::int32_t> outside(25, 7);
    EXPECT_EQ(SilhouetteDistance(5, 5, outside.data()).GetDistance(0, 0), 0.0F);
}

TEST(HullCarver, PrefersAnOutlineInTheRingsAroundTheOneFound)
{
    // The way down from the middle leads right, to (3, 2), and right again, to (4, 2), two pixels away. Beside that lies
    // (3, 1), at sqrt(2).
    const std::vector<std::int32_t> layers{9, 9, 9, 9, 9, //
                                           9, 9, 9, 0, 9, //
                                           9, 9, 2, 1, 0, //
                                           9, 9, 9, 9, 9, //
                                           9, 9, 9, 9, 9};
    EXPECT_FLOAT_EQ(SilhouetteDistance(5, 5, layers.data()).GetDistance(2, 2),
                    static_cast<float>(std::sqrt(2.0)) / (5 / 2.4F));
}

/// Random images of all kinds, and matrices that need not be rotations.
class CarverAgainstLiteral : public testing::TestWithParam<unsigned>
{
};

TEST_P(CarverAgainstLiteral, GivesTheSameField)
{
    std::mt19937 random(GetParam());
    const int width = GetParam() == 0 ? 1 : 40 + static_cast<int>(random() % 300);
    const int height = GetParam() == 1 ? 2 : 40 + static_cast<int>(random() % 200);
    DistanceField field;
    HullCarver carver(field);
    LiteralField literal;
    for (int n = 0; n < 3; ++n)
    {
        const Layers layers(width, height,
                            MakeRandomSilhouette(width, height, GetParam() * 8 + static_cast<unsigned>(n),
                                                 1 + static_cast<int>(random() % 6),
                                                 0.0005 * static_cast<double>(random() % 4)));
        smMatrix44d view = IAProjectionCommand::MakeView(static_cast<int>(random() % 90), 35 * n);
        view.At(3, 0) = 0.01 * static_cast<double>(random() % 20);
        view.At(2, 1) *= 0.5 + 0.1 * static_cast<double>(random() % 10);
        carver.AddView(view, layers.GetSilhouette());
        literal.AddView(view, width, height, layers.entries);
        ASSERT_TRUE(IsSameInEveryBit(field.GetValues(), literal.GetValues())) << "view " << n;
    }
}

INSTANTIATE_TEST_SUITE_P(RandomImages, CarverAgainstLiteral, testing::Range(0U, 10U));

TEST(SilhouetteDistance, NeverCallsADistanceTooSmallThatIsNot)
{
    int skipped = 0;
    for (unsigned seed = 0; seed < 30; ++seed)
    {
        const Layers layers(160, 120, MakeRandomSilhouette(160, 120, seed, 5, 0.0003 * (seed % 5)));
        const SilhouetteDistance silhouette = layers.GetSilhouette();
        for (int i = 0; i < 159 * 119; ++i)
        {
            const int x = i % 159;
            const int y = i / 159;
            for (const float value : {-1000.0F, -0.1F, -0.03F, 0.0F, 0.04F, 0.3F})
            {
                const bool isSkipped = silhouette.CannotExceed(x, y, value);
                skipped += isSkipped ? 1 : 0;
                ASSERT_TRUE(!isSkipped || silhouette.GetDistance(x, y) <= value) << x << ' ' << y;
            }
        }
    }
    EXPECT_GT(skipped, 100000);
}
}
}
