#include "sketch/app/appearance.h"

#include "sketch/app/desktop_wishes.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDBusVariant>
#include <QImage>
#include <QLineEdit>
#include <QSpinBox>
#include <QTableWidget>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

const QPalette kLightDesktop(QColor(0xee, 0xee, 0xee), QColor(0xee, 0xee, 0xee));
const QPalette kDarkDesktop(QColor(0x30, 0x30, 0x30), QColor(0x30, 0x30, 0x30));

struct Wish {
    const char* group;
    const char* key;
    QVariant value;
};
constexpr const char* kAppearance = "org.freedesktop.appearance";

struct LookCase {
    const char* name;
    ColourChoice choice;
    std::vector<Wish> wishes;
    bool isDesktopDark;
    bool isOwn, isDark, isHighContrast; // the palette, and what it is
};
const LookCase kLooks[] = {
    {"DesktopWithoutWishesKeepsItsPalette",      ColourChoice::automatic, {}, false, false, false, false},
    {"DarkDesktopKeepsItsPaletteWithADarkSheet", ColourChoice::automatic, {}, true,  false, true,  false},
    {"DesktopThatPrefersDarkGetsIt",
     ColourChoice::automatic,
     {{kAppearance, "color-scheme", 1U}},
     false,                                                                          true,
     true,                                                                                         false},
    {"DesktopThatPrefersLightGetsIt",
     ColourChoice::automatic,
     {{kAppearance, "color-scheme", 2U}},
     false,                                                                          false,
     false,                                                                                        false},
    {"DesktopThatPrefersContrastGetsIt",
     ColourChoice::automatic,
     {{kAppearance, "contrast", 1U}},
     false,                                                                          true,
     false,                                                                                        true },
    {"DarkDesktopThatPrefersContrastGetsItDark",
     ColourChoice::automatic,
     {{kAppearance, "contrast", 1U}},
     true,                                                                           true,
     true,                                                                                         true },
    {"UsersChoiceGoesBeforeTheDesktops",
     ColourChoice::light,
     {{kAppearance, "color-scheme", 1U}},
     true,                                                                           true,
     false,                                                                                        false},
    {"LastWishCounts",
     ColourChoice::automatic,
     {{kAppearance, "color-scheme", 1U}, {kAppearance, "color-scheme", 0U}},
     false,                                                                          false,
     false,                                                                                        false},
    {"OtherWishesAreIgnored",
     ColourChoice::automatic,
     {{kAppearance, "accent-color", 1U}, {"org.example", "contrast", 1U}},
     false,                                                                          false,
     false,                                                                                        false},
};
class Looks : public testing::TestWithParam<LookCase> {};
TEST_P(Looks, FollowTheUserAndTheDesktop)
{
    DesktopWishes wishes;
    for (const Wish& wish : GetParam().wishes)
        wishes.take(wish.group, wish.key, QDBusVariant(wish.value));
    const QPalette& desktop = GetParam().isDesktopDark ? kDarkDesktop : kLightDesktop;
    const Look look = lookOf(GetParam().choice, wishes, desktop);
    EXPECT_EQ(look.palette.has_value(), GetParam().isOwn);
    EXPECT_EQ(is_dark(look.palette.value_or(desktop)), GetParam().isDark);
    EXPECT_EQ(look.canvas.sheet.lightness() < 128, GetParam().isDark);
    EXPECT_EQ(look.isHighContrast, GetParam().isHighContrast);
}
INSTANTIATE_TEST_SUITE_P(, Looks, testing::ValuesIn(kLooks), [](const auto& row) { return row.param.name; });

TEST(DesktopWishesTest, TakeAVariantWithinAVariantAndMotionFromEitherPlace)
{
    DesktopWishes wishes;
    int changes = 0;
    QObject::connect(&wishes, &DesktopWishes::changed, [&changes] { ++changes; });
    wishes.take(kAppearance, "color-scheme", QDBusVariant(QVariant::fromValue(QDBusVariant(1U))));
    EXPECT_TRUE(wishes.dark());
    wishes.take("org.gnome.desktop.interface", "enable-animations", QDBusVariant(false));
    EXPECT_TRUE(wishes.reducedMotion());
    wishes.take(kAppearance, "reduced-motion", QDBusVariant(0U));
    EXPECT_FALSE(wishes.reducedMotion());
    wishes.take(kAppearance, "unknown", QDBusVariant(1U));
    EXPECT_EQ(changes, 3);
}

struct EdgeCase {
    const char* name;
    QWidget* (*make)();
};
const EdgeCase kEdges[] = {
    {"ACheckBox",     [] { return static_cast<QWidget*>(new QCheckBox); }     },
    {"ASpinBox",      [] { return static_cast<QWidget*>(new QSpinBox); }      },
    {"ADoubleBox",    [] { return static_cast<QWidget*>(new QDoubleSpinBox); }},
    {"AChoice",       [] { return static_cast<QWidget*>(new QComboBox); }     },
    {"AField",        [] { return static_cast<QWidget*>(new QLineEdit); }     },
    {"AListOfTheirs", [] { return static_cast<QWidget*>(new QTableWidget); }  },
};
class Edges : public testing::TestWithParam<EdgeCase> {};
// From the left and from the right, in the middle of its height, its edge is the first that one meets.
TEST_P(Edges, AreSeenInHighContrast)
{
    Appearance appearance;
    for (const ColourChoice choice : {ColourChoice::highContrastDark, ColourChoice::highContrastLight}) {
        appearance.apply(lookOf(choice, DesktopWishes(), kLightDesktop));
        const std::unique_ptr<QWidget> widget(GetParam().make());
        widget->resize(GetParam().name == std::string("ACheckBox") ? QSize(24, 24) : QSize(160, 28));
        const QImage image = widget->grab().toImage();
        const bool isDark = choice == ColourChoice::highContrastDark;
        int edges = 0;
        for (int x = 0; x < 6; ++x)
            edges += (qGray(image.pixel(x, image.height() / 2)) > 128) == isDark ? 1 : 0;
        EXPECT_GE(edges, 1) << (isDark ? "dark" : "light");
        EXPECT_LE(edges, 4) << "and it is an edge, not a field";
    }
    appearance.apply({});
}
INSTANTIATE_TEST_SUITE_P(, Edges, testing::ValuesIn(kEdges), [](const auto& row) { return row.param.name; });

TEST(HighContrast, ShowsWhetherABoxIsChecked)
{
    Appearance appearance;
    for (const ColourChoice choice : {ColourChoice::highContrastDark, ColourChoice::highContrastLight}) {
        appearance.apply(lookOf(choice, DesktopWishes(), kLightDesktop));
        QCheckBox box;
        box.resize(24, 24);
        const QImage before = box.grab().toImage();
        box.setChecked(true);
        const QImage after = box.grab().toImage();
        int different = 0;
        for (int y = 0; y < after.height(); ++y)
            for (int x = 0; x < after.width(); ++x)
                different += std::abs(qGray(before.pixel(x, y)) - qGray(after.pixel(x, y))) > 128 ? 1 : 0;
        EXPECT_GE(different, 20) << static_cast<int>(choice);
    }
    appearance.apply({});
}

// Web Content Accessibility Guidelines 2.1, "relative luminance" and "contrast ratio".
double luminance(const QColor& colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}
double contrast(const QColor& a, const QColor& b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

struct ContrastCase {
    const char* name;
    ColourChoice choice;
    double least; // of text; the guidelines' AA is 4.5, AAA 7
};
const ContrastCase kContrasts[] = {
    {"Light",             ColourChoice::light,             4.5},
    {"Dark",              ColourChoice::dark,              4.5},
    {"HighContrastLight", ColourChoice::highContrastLight, 7  },
    {"HighContrastDark",  ColourChoice::highContrastDark,  7  },
};
class Contrasts : public testing::TestWithParam<ContrastCase> {};
TEST_P(Contrasts, LetWordsBeRead)
{
    const Look look = lookOf(GetParam().choice, DesktopWishes(), kLightDesktop);
    const QPalette& palette = look.palette.value();
    using Role = QPalette::ColorRole;
    const std::pair<Role, Role> pairs[] = {
        {Role::WindowText,      Role::Window       },
        {Role::Text,            Role::Base         },
        {Role::Text,            Role::AlternateBase},
        {Role::ButtonText,      Role::Button       },
        {Role::HighlightedText, Role::Highlight    },
        {Role::ToolTipText,     Role::ToolTipBase  },
        {Role::Link,            Role::Base         },
    };
    for (const auto& [text, ground] : pairs)
        EXPECT_GE(contrast(palette.color(text), palette.color(ground)), GetParam().least)
            << "role " << text << " on " << ground;
    EXPECT_GE(contrast(look.canvas.ink, look.canvas.sheet), GetParam().least);
}
INSTANTIATE_TEST_SUITE_P(, Contrasts, testing::ValuesIn(kContrasts),
                         [](const auto& row) { return row.param.name; });

} // namespace
