#include "Spring.h"

#include <cmath>
#include <numbers>

namespace {

double omega(double response) { return 2.0 * std::numbers::pi / response; }

} // namespace

double Spring::value(double seconds) const
{
    if (seconds <= 0)
        return 0;
    const double w0 = omega(m_response);
    const double decay = std::exp(-m_damping * w0 * seconds);
    if (m_damping >= 1.0)
        return 1.0 - decay * (1.0 + w0 * seconds);
    const double wd = w0 * std::sqrt(1.0 - m_damping * m_damping);
    return 1.0 - decay * (std::cos(wd * seconds) + m_damping * w0 / wd * std::sin(wd * seconds));
}

double Spring::settleSeconds() const
{
    // The envelope of the motion falls below a thousandth; under-damped, its
    // height is 1 / sqrt(1 - damping²) times the decay.
    const double w0 = omega(m_response);
    const double d = std::min(m_damping, 0.999);
    const double envelope = 1.0 / std::sqrt(1.0 - d * d);
    return std::log(envelope * 1000.0) / (d * w0);
}

double Spring::at(double fraction) const
{
    if (fraction >= 1.0)
        return 1.0;
    return value(fraction * settleSeconds());
}
