#pragma once

// The pulsed-Doppler board's carrier and the relation between a target's
// range rate and the tone it leaves in the complex baseband. The board
// samples once per pulse, so a target whose range falls (range rate v < 0)
// turns the phase e^{-j 4 pi R / lambda} forward: its tone lies at the
// positive frequency f = -2 v / lambda. Everything that converts between
// the two goes through here, so the sign is written down once.
namespace ZP7SDoppler {

constexpr double kSpeedOfLightMPerS = 299792458.0;
constexpr double kCenterFrequencyHz = 24.125e9;
constexpr double kWavelengthM = kSpeedOfLightMPerS / kCenterFrequencyHz;

// Range rate in m/s of a target at `frequencyHz`; negative = approaching.
constexpr double radialSpeed(double frequencyHz)
{
    return -frequencyHz * kWavelengthM / 2.0;
}

// The Doppler frequency in Hz of a target with range rate `speedMPerS`.
constexpr double dopplerFrequency(double speedMPerS)
{
    return -2.0 * speedMPerS / kWavelengthM;
}

}
