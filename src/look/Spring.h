// Spring: a critically or under-damped spring as a movement from 0 to 1,
// described as people tune one: `response`, the period in seconds of the
// undamped spring, and `damping`, the fraction of critical damping (1 never
// overshoots). SpringValue.qml runs it over the time it takes to settle. A
// value; any thread.

#pragma once

class Spring
{
public:
    constexpr Spring(double response, double damping) : m_response(response), m_damping(damping) {}

    double response() const { return m_response; }
    double damping() const { return m_damping; }

    // Where the spring stands `seconds` after letting go, from 0 towards 1.
    double value(double seconds) const;
    // When it stays within a thousandth of 1 from then on.
    double settleSeconds() const;
    // The value at `fraction` of the settle time, exactly 1 from 1 on.
    double at(double fraction) const;

private:
    double m_response;
    double m_damping;
};
