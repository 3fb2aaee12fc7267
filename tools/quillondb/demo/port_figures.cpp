// The kinds of ports as rows of a table, and their figures.
#include "quillondb/demo/port_figures.h"

#include <cmath>
#include <span>

#include "quillondb/demo/network.h"
#include "quillondb/demo/random.h"

namespace quillon {
namespace {

constexpr int kOnce = 100000;  // more ports than there are
constexpr int kUnknown = -1;   // how a figure that the device does not count is stored

// The first row that fits is the port's kind; the last one fits all.
constexpr PortProfile kAccessProfiles[] = {
    // first every up     in Mb    out Mb  weekend bcast mcast  in errors out errors
    {41, kOnce, true, 5600000, 180000, 1.2, 90, 12, 0, 0},   // backup server
    {97, 140, true, 620000, 840000, 0.6, 160, 40, 0, 0},     // file server
    {13, 120, true, 1500, 4200, 0.2, 25, 6, 2900000, 1400},  // broken cable
    {57, 130, true, 900, 700, 0.3, 18, 4, 5200, 310000},     // duplex mismatch
    {29, 115, true, 16000, 21000, 0.9, 5200, 900, 40, 0},    // chatty device
    {7, 6, false, 0, 0, 0, 0, 0, 0, 0},                      // nothing plugged in
    {5, 11, true, 52000, 600, 1.0, 4, 70, 0, 0},             // camera
    {8, 17, true, 24000, 61000, 0.15, 240, 310, 0, 0},       // access point
    {3, 9, true, 40, 190, 0.05, 9, 2, 0, 0},                 // printer
    {10, 14, true, 6, 4, 1.0, 1, 0, 0, 0},                   // door control
    {0, 1, true, 1900, 6400, 0.08, 32, 8, 0, 0},             // workstation
};

constexpr PortProfile kTrunkProfiles[] = {
    {0, 47, true, 3300000, 2900000, 0.5, 900, 420, 0, 0},       // backbone
    {11, 40, true, 64000, 91000, 0.3, 340, 120, 860000, 2600},  // dirty fibre
    {5, 9, false, 0, 0, 0, 0, 0, 0, 0},                         // standby
    {0, 1, true, 88000, 140000, 0.25, 420, 150, 0, 0},          // uplink
};

std::span<const PortProfile> Profiles(bool isTrunk) {
  if (isTrunk) return kTrunkProfiles;
  return kAccessProfiles;
}

bool Fits(const PortProfile& profile, int ordinal) {
  return ordinal >= profile.first && (ordinal - profile.first) % profile.every == 0;
}

bool IsWeekend(std::chrono::local_days day) {
  const std::chrono::weekday weekday(day);
  return weekday == std::chrono::Saturday || weekday == std::chrono::Sunday;
}

std::int64_t WholeFigure(double value) {
  return std::llround(value);
}

// Faulty ports swing widely; on the others an error is an exception.
std::int64_t Errors(double usual, DemoRandom& random) {
  if (usual > 0) return WholeFigure(usual * random.Between(0.2, 1.8));
  return random.Chance(0.06) ? random.Whole(1, 30) : 0;
}

}  // namespace

const PortProfile& ProfileOf(bool isTrunk, int ordinal) {
  const std::span<const PortProfile> profiles = Profiles(isTrunk);
  for (const PortProfile& profile : profiles) {
    if (Fits(profile, ordinal)) return profile;
  }
  return profiles.back();
}

PortFigures FiguresOf(const DemoPort& port, std::chrono::local_days reportDay) {
  const PortProfile& profile = *port.profile;
  const std::chrono::local_days day = reportDay - std::chrono::days(1);
  DemoRandom random({port.recNo, port.ifIndex, day.time_since_epoch().count()});
  PortFigures figures;
  if (profile.isUp) {
    const double rhythm = port.scale * (IsWeekend(day) ? profile.weekend : 1.0);
    figures.inMb = WholeFigure(profile.inMb * rhythm * random.Between(0.7, 1.3));
    figures.outMb = WholeFigure(profile.outMb * rhythm * random.Between(0.7, 1.3));
    figures.broadcastPpm = WholeFigure(profile.broadcast * random.Between(0.6, 1.3));
    figures.multicastPpm = WholeFigure(profile.multicast * random.Between(0.6, 1.3));
    figures.inErrors = Errors(profile.inErrors, random);
    figures.outErrors = Errors(profile.outErrors, random);
  }
  if (!port.countsMulticast) figures.multicastPpm = kUnknown;
  if (!port.countsOctets) figures.inMb = figures.outMb = kUnknown;
  return figures;
}

}  // namespace quillon
