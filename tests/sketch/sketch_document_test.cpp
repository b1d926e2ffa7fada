#include "sketch/core/sketch_document.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace vnt::sketch;

StrokePtr stroke(StrokeId id, Kind kind = Kind::ink)
{
    auto made = std::make_shared<Stroke>();
    made->id = id;
    made->kind = kind;
    return made;
}

std::vector<StrokeId> ids_of(const SketchDocument& document)
{
    std::vector<StrokeId> ids;
    for (const StrokePtr& each : document.strokes())
        ids.push_back(each->id);
    return ids;
}

SketchDocument three()
{
    SketchDocument document;
    for (const StrokeId id : {7U, 3U, 5U})
        document.insert(9, stroke(id));
    return document;
}

using Ids = std::vector<StrokeId>;

TEST(SketchDocument, PutsAStrokeAtItsIndexAndOnTopBeyondIt)
{
    SketchDocument document = three();
    EXPECT_EQ(ids_of(document), (Ids{7, 3, 5}));
    EXPECT_TRUE(document.insert(0, stroke(10)));
    EXPECT_TRUE(document.insert(2, stroke(11)));
    EXPECT_TRUE(document.insert(5, stroke(12)));
    EXPECT_TRUE(document.insert(std::numeric_limits<std::size_t>::max(), stroke(13)));
    EXPECT_EQ(ids_of(document), (Ids{10, 7, 11, 3, 5, 12, 13}));
}

TEST(SketchDocument, FindsEveryStrokeAndNoOther)
{
    const SketchDocument document = three();
    EXPECT_EQ(document.index_of(7), 0U);
    EXPECT_EQ(document.index_of(3), 1U);
    EXPECT_EQ(document.index_of(5), 2U);
    EXPECT_EQ(document.find(3), document.strokes()[1]);
    for (const StrokeId id : {0U, 1U, 4U, 6U, 8U, 99U}) {
        EXPECT_FALSE(document.index_of(id)) << id;
        EXPECT_FALSE(document.find(id)) << id;
    }
    EXPECT_FALSE(SketchDocument().find(0));
}

TEST(SketchDocument, RefusesWhatItCannotHold)
{
    SketchDocument document = three();
    EXPECT_FALSE(document.insert(0, nullptr));
    EXPECT_FALSE(document.insert(0, stroke(3)));
    EXPECT_FALSE(document.insert(0, stroke(kLargestStrokeId + 1)));
    EXPECT_FALSE(document.replace(nullptr));
    EXPECT_FALSE(document.replace(stroke(4)));
    EXPECT_FALSE(document.take(4));
    EXPECT_EQ(ids_of(document), (Ids{7, 3, 5}));
}

TEST(SketchDocument, GivesBackWhatItTakes)
{
    SketchDocument document = three();
    const StrokePtr middle = document.strokes()[1];
    EXPECT_EQ(document.take(3), middle);
    EXPECT_EQ(ids_of(document), (Ids{7, 5}));
    EXPECT_EQ(document.index_of(5), 1U);
    EXPECT_FALSE(document.take(3));
    EXPECT_TRUE(document.insert(1, middle)); // undone
    EXPECT_EQ(ids_of(document), (Ids{7, 3, 5}));
}

TEST(SketchDocument, ReplacesInTheSamePlace)
{
    SketchDocument document = three();
    const StrokePtr circle = stroke(3, Kind::circle);
    EXPECT_TRUE(document.replace(circle));
    EXPECT_EQ(document.find(3), circle);
    EXPECT_EQ(ids_of(document), (Ids{7, 3, 5}));
}

TEST(SketchDocument, NeverGivesAnIdTwice)
{
    SketchDocument document = three();
    EXPECT_EQ(document.new_id(), 8U);
    EXPECT_EQ(document.new_id(), 9U);
    document.insert(0, stroke(20));
    document.take(20);
    EXPECT_EQ(document.new_id(), 21U);
    document.clear();
    EXPECT_TRUE(document.strokes().empty());
    EXPECT_FALSE(document.find(7));
    EXPECT_EQ(document.new_id(), 22U);
    EXPECT_TRUE(document.insert(0, stroke(7))); // a clear that is undone
    EXPECT_TRUE(document.insert(0, stroke(kLargestStrokeId)));
    EXPECT_EQ(document.new_id(), kLargestStrokeId + 1);
}

// Drawn, all undone from the top, all redone, and all taken from the bottom: the costliest order.
TEST(SketchDocument, IsDrawnUndoneAndRedoneTenThousandTimes)
{
    constexpr StrokeId kMany = 10'000;
    SketchDocument document;
    std::vector<StrokePtr> undone;
    for (StrokeId id = 1; id <= kMany; ++id)
        ASSERT_TRUE(document.insert(document.strokes().size(), stroke(document.new_id())));
    for (StrokeId id = kMany; id >= 1; --id)
        undone.push_back(document.take(id));
    ASSERT_TRUE(document.strokes().empty());
    for (auto next = undone.rbegin(); next != undone.rend(); ++next)
        ASSERT_TRUE(document.insert(document.strokes().size(), *next));
    for (StrokeId id = 1; id <= kMany; ++id)
        ASSERT_EQ(document.take(id)->id, id);
    EXPECT_TRUE(document.strokes().empty());
}

} // namespace
