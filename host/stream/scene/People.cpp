#include "host/stream/scene/People.h"

#include <array>

namespace zarvo::host {
namespace {

using Hair = Person::Hair;

constexpr Color kPale = Color::FromRgb(238, 200, 178);
constexpr Color kFair = Color::FromRgb(224, 178, 148);
constexpr Color kOlive = Color::FromRgb(198, 150, 116);
constexpr Color kBrownSkin = Color::FromRgb(150, 102, 74);
constexpr Color kDarkSkin = Color::FromRgb(106, 70, 52);

constexpr Color kBlack = Color::FromRgb(38, 32, 32);
constexpr Color kBrown = Color::FromRgb(84, 56, 38);
constexpr Color kBlond = Color::FromRgb(196, 158, 92);
constexpr Color kRed = Color::FromRgb(152, 74, 40);
constexpr Color kGrey = Color::FromRgb(158, 156, 154);

constexpr Color kBrownEyes = Color::FromRgb(98, 62, 34);
constexpr Color kBlueEyes = Color::FromRgb(76, 122, 168);
constexpr Color kGreenEyes = Color::FromRgb(88, 128, 84);

// Neighbours and persons an odd number apart, who meet in one scene, differ at a glance.
constexpr std::array<Person, kPeople> kPersons{{
        {kFair, Hair::kParted, kBrown, kBlueEyes, Color::FromRgb(52, 82, 126), false, false, 1.02F},
        {kDarkSkin, Hair::kBun, kBlack, kBrownEyes, Color::FromRgb(196, 154, 52), false, false,
         0.96F},
        {kPale, Hair::kLong, kRed, kGreenEyes, Color::FromRgb(58, 104, 78), false, false, 0.96F},
        {kOlive, Hair::kShort, kBlack, kBrownEyes, Color::FromRgb(168, 72, 60), false, true, 1.04F},
        {kPale, Hair::kNone, kGrey, kBlueEyes, Color::FromRgb(92, 92, 104), true, true, 1.02F},
        {kFair, Hair::kLong, kBlond, kBlueEyes, Color::FromRgb(126, 70, 112), true, false, 0.95F},
        {kBrownSkin, Hair::kShort, kBlack, kBrownEyes, Color::FromRgb(214, 206, 190), true, false,
         1.03F},
        {kOlive, Hair::kLong, kBrown, kGreenEyes, Color::FromRgb(44, 118, 124), false, false,
         0.97F},
}};

}  // namespace

const Person& PersonNumber(size_t number) {
    return kPersons[number];
}

}  // namespace zarvo::host
