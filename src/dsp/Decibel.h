#pragma once

namespace parlowen {

/// Level of a power in decibels above `reference`: 10·log10(power) − reference, floored at 0.
/// `power` is clamped to [1, 1e14] (NaN counts as 1), so the result lies in 0 .. 140 − reference dB. The
/// logarithm is read from Log10Table with a truncated index: never above the exact value, below it by at most
/// 0.011 dB. Needs InitSignalTables().
double PowerToDb(double power, int reference);

/// levels[i] = PowerToDb(powers[i], reference) for i = 0..count-1, several times as fast. In place is
/// allowed.
void PowersToDb(const double* powers, int count, int reference, double* levels);

}  // namespace parlowen
