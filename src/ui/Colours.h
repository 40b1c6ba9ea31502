#pragma once
#include <cstdint>

namespace parlowen {

/// 0xRRGGBB.
using Colour = std::uint32_t;

/// Every colour of every picture has its name here.
namespace colours {

inline constexpr Colour kBlack = 0x000000, kWhite = 0xFFFFFF, kGrid = 0xC8C8C8, kText = 0x303030;
inline constexpr Colour kSelection = 0xCFE4FF, kStart = 0x007A33, kEnd = 0xC00000, kCursor = 0xD06000;

// What is laid over data.
inline constexpr Colour kTint = 0x3080FF, kViewEdge = 0x3060B0, kMarked = 0xE0A000;
inline constexpr double kTintOpacity = 0.18;

// Waveforms, levels, pitch.
inline constexpr Colour kWave = 0x1F3F77, kSecondWave = 0xB03000, kLevelLine = 0xB03000;
inline constexpr Colour kLevelBars = 0x9DB8D9, kPitch = 0x0050A0, kRatio = 0x00664D;

// Spectra.
inline constexpr Colour kSpectrumRed = 0xC80000, kSpectrumBlue = 0x0030C0, kSpectrumBars = 0x00DC00;
inline constexpr Colour kBandBar = 0x4070B0, kSpectrogramGrid = 0xA8B8C8, kFormant = 0xE00000;
inline constexpr Colour kRidge = 0x203060, kFormantStrip = 0x2050A0;

// Tones and intonation.
inline constexpr Colour kToneItem = 0xA0A0A0, kStandardTone = 0xB0B0B0, kPicked = 0xE00000;
inline constexpr Colour kMelody = 0x808080, kMelodyCopy = 0x202020, kComparedMelody = 0xA8A8A8;
inline constexpr Colour kUnitBox = 0x0060D0, kUnitBoundary = 0xB0B0B0, kTopLine = 0xC00000,
                        kBaseLine = 0x008040, kDurationBar = 0x0060D0, kEnergyBar = 0xD07000;

// Resynthesis and durations.
inline constexpr Colour kPresentPitch = 0x008000, kTargetPitch = 0xD00000, kInvalid = 0xF0F0F0;
inline constexpr Colour kHatch = 0x00A000;

// The glottal wave: the period in hand, and a second channel behind the derivative.
inline constexpr Colour kChosenPeriod = 0xFFF0C8, kBehind = 0xA0A0A0, kBehindName = 0x767676;

// Palates.
inline constexpr Colour kPalateLeft = 0x0030C0, kPalateRight = 0xC80000, kPalateFrame = 0x008090;
inline constexpr Colour kTotalContact = 0x000000, kGravityCentre = 0xC80000, kAnteriority = 0x0030C0,
                        kCentrality = 0x007A33;

// The section through the head.
inline constexpr Colour kHead = 0xFBEBDD, kHeadLine = 0x7A5848, kAir = 0xFFFFFF, kAirflow = 0x2078B0;
inline constexpr Colour kTongue = 0xEE9C98, kTongueLine = 0x8E2430, kPalateTissue = 0xF4C4B0;
inline constexpr Colour kBone = 0xFAF3DC, kBoneLine = 0x8C7A58, kTooth = 0xFFFFFF;
inline constexpr Colour kLips = 0xDB7478, kLipLine = 0x8E2430, kMouthInside = 0x5A1A20;
inline constexpr Colour kPartName = 0x604838, kEstimate = 0x0040D0, kTube = 0xDCE8FF;

// Texts, markers, charts.
inline constexpr Colour kAnnotation = 0x00586A, kCharacters = 0x8A2060, kPalateMarker = 0x7030A0;
inline constexpr Colour kBandFill = 0xF2F2F2, kStretchLine = 0x606060;
inline constexpr Colour kMarkerBand[] = {0xC00000, 0x00662E, 0x6A1B9A, 0x8A5000};
inline constexpr Colour kChartPoint = 0xC80000;

/// Curves of one plot, in order; a grey print tells the first ones apart by their lightness.
inline constexpr Colour kCurve[] = {0xC00000, 0x0060D0, 0x008040, 0xA000A0,
                                    0xB05A00, 0x008090, 0x606060, 0x804000};

}  // namespace colours
}  // namespace parlowen
