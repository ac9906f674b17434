#include "host/stream/scene/Visits.h"

#include <algorithm>
#include <cmath>

#include "host/stream/scene/Curves.h"
#include "host/stream/scene/People.h"
#include "host/stream/scene/Random.h"

namespace zarvo::host {
namespace {

constexpr double kActSeconds = 27;
/** The scene begins in the middle of an act, when the host has come in. */
constexpr double kLeadIn = 5;
/** The host begins to make room before the guest is there, and takes its time. */
constexpr double kRoomAhead = 0.6;
constexpr double kRoomSeconds = 1.8;

/** What decides one act, and what decides one visit. */
enum Chance : uint64_t {
    kHostBegin,
    kGuestBegin,
    kFirstExit,
    kLastExit,
    kHostStaysLonger,
    kPlace,
    kHostCameFrom,
    kLastGoesTo,
    kHost,
    kGuest,
    kHostVisit,
    kGuestVisit,
    kFirstPerson,
    kPersonStep,
    /** The first act, and from here on the others. */
    kActs,
};

Side Opposite(Side side) {
    return side == Side::kLeft ? Side::kRight : Side::kLeft;
}

Side RandomSide(uint64_t seed, uint64_t chance) {
    return RandomBelow(seed, chance, 2) == 0 ? Side::kLeft : Side::kRight;
}

/** The seed's few persons, as a number among all. */
size_t PersonOf(uint64_t seed, uint64_t role) {
    const uint64_t step = 1 + 2 * RandomBelow(seed, kPersonStep, kPeople / 2);
    static_assert((kPeople & (kPeople - 1)) == 0, "odd steps reach everybody");
    return (RandomBelow(seed, kFirstPerson, kPeople) + role * step) % kPeople;
}

struct Stay {
    double begin = 0;
    double end = 0;
};

/** One act of the story, in seconds from the act's beginning. */
class Act {
  public:
    Act(uint64_t seed, uint64_t number)
        : mSeed(seed),
          mNumber(number),
          mChance(SeedOf(seed, kActs + number)),
          mHostStaysLonger(RandomBelow(mChance, kHostStaysLonger, 2) == 0) {
        mHost.begin = RandomBetween(mChance, kHostBegin, 1, 2);
        mGuest.begin = mHost.begin + RandomBetween(mChance, kGuestBegin, 6, 9);
        Stay& first = mHostStaysLonger ? mGuest : mHost;
        Stay& last = mHostStaysLonger ? mHost : mGuest;
        first.end = first.begin + (mHostStaysLonger ? RandomBetween(mChance, kFirstExit, 10, 13)
                                                    : RandomBetween(mChance, kFirstExit, 14, 17));
        last.end = RandomBetween(mChance, kLastExit, 24, 26);
    }

    Company At(double seconds) const {
        const Side place = RandomSide(mChance, kPlace);
        const Side lastGoesTo = RandomSide(mChance, kLastGoesTo);
        Visit host = Seen(mHost, seconds, kHostVisit);
        host.cameFrom = RandomSide(mChance, kHostCameFrom);
        host.goesTo = mHostStaysLonger ? lastGoesTo : place;
        host.place = place;
        Visit guest = Seen(mGuest, seconds, kGuestVisit);
        guest.cameFrom = guest.place = Opposite(place);
        guest.goesTo = mHostStaysLonger ? guest.place : lastGoesTo;
        Company company;
        for (const Visit& visit : {host, guest})
            if (visit.sinceEntry > 0 && visit.untilExit > 0)
                company.visits[company.count++] = visit;
        return company;
    }

  private:
    Visit Seen(const Stay& stay, double seconds, Chance which) const {
        constexpr uint64_t kPersons = 4;
        const bool isGuest = which == kGuestVisit;
        const uint64_t host = RandomBelow(mChance, kHost, kPersons);
        const uint64_t toGuest = isGuest ? 1 + RandomBelow(mChance, kGuest, kPersons - 1) : 0;
        Visit visit;
        visit.trackId = static_cast<int32_t>(1 + 2 * mNumber + (isGuest ? 1 : 0));
        visit.person = PersonOf(mSeed, (host + toGuest) % kPersons);
        visit.seed = SeedOf(mChance, which);
        visit.sinceEntry = seconds - stay.begin;
        visit.untilExit = stay.end - seconds;
        visit.aside = Aside(seconds);
        return visit;
    }
    float Aside(double seconds) const {
        const double sinceBoth = seconds - mGuest.begin;
        const double untilOne = std::min(mHost.end, mGuest.end) - seconds;
        return Ease((sinceBoth + kRoomAhead) / kRoomSeconds) *
               Ease((untilOne + kRoomAhead) / kRoomSeconds);
    }

    const uint64_t mSeed;
    const uint64_t mNumber;
    const uint64_t mChance;
    const bool mHostStaysLonger;
    Stay mHost;
    Stay mGuest;
};

/** So many persons of the seed, who were always there and stay. */
Company Fixed(size_t count, uint64_t seed, double seconds) {
    Company company;
    for (; company.count < count; ++company.count) {
        Visit& visit = company.visits[company.count];
        visit.trackId = static_cast<int32_t>(1 + company.count);
        visit.person = PersonOf(seed, company.count);
        visit.seed = SeedOf(seed, company.count == 0 ? kHostVisit : kGuestVisit);
        visit.sinceEntry += seconds;
        visit.aside = count > 1 ? 1 : 0;
        visit.place = company.count == 0 ? Side::kLeft : Side::kRight;
    }
    return company;
}

}  // namespace

Company WhoIsThere(Cast cast, uint64_t seed, double seconds) {
    switch (cast) {
        case Cast::kNobody:
            return {};
        case Cast::kOne:
            return Fixed(1, seed, seconds);
        case Cast::kTwo:
            return Fixed(2, seed, seconds);
        case Cast::kStory:
            break;
    }
    const double now = seconds + kLeadIn;
    const double act = std::floor(now / kActSeconds);
    return Act(seed, static_cast<uint64_t>(act)).At(now - act * kActSeconds);
}

}  // namespace zarvo::host
