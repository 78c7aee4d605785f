#include "platform/simulated/ThermalModel.h"

#include <algorithm>
#include <cmath>

namespace orvalen {

namespace {

template <typename Value>
using PerBody = std::array<Value, bodyCount>;

// The numbers below were fitted together, to three things: how far the sensors of such a laptop stand above the room in
// light use, how far each kind of load lifts them in five minutes, and that a warm-up is worth watching. From a cold
// start in a room of 20 °C some 40 s of heating bring the display bridge to 40 °C, and it then takes over a minute to
// lose 2 °C. The last wish makes the board lighter and better coupled to the room than a real one, whose case goes on
// warming for half an hour: here it is warm after four minutes.
constexpr PerBody<double> heatCapacity = {
    // J/K
    2.5,   // processor: silicon and package, 5 g each
    3.0,   // graphics
    5.0,   // regulators
    18.0,  // board: some 20 g of copper and glass fibre that feel the heat within the first minutes
    4.0,   // displayBridge
    6.5,   // storage
    5.5,   // ports
    350.0, // battery: hundreds of grams, hence hours
    150.0, // shell
};

constexpr PerBody<double> leakToRoom = {
    // W/K
    0.0,   // processor: under the spreader, the board is its only way out
    0.0,   // graphics
    0.067, // regulators
    0.57,  // board: the spreader lies against the case
    0.047, // displayBridge
    0.074, // storage
    0.064, // ports
    0.30,  // battery
    2.0,   // shell: follows the room within some minutes
};

struct Joint
{
    Body one;
    Body other;
    double wattsPerKelvin;
};
constexpr std::array joints = {
    Joint{Body::processor, Body::board, 0.50},  Joint{Body::graphics, Body::board, 0.37},
    Joint{Body::regulators, Body::board, 0.27}, Joint{Body::displayBridge, Body::board, 0.20},
    Joint{Body::storage, Body::board, 0.010},   Joint{Body::ports, Body::board, 0.009},
    Joint{Body::battery, Body::board, 0.006},   Joint{Body::shell, Body::board, 0.010},
};

struct Source
{
    Body body;
    double watts;
};

// Switched on and in light use. Much of it is the display's: its supply sits among the regulators and at the bridge.
constexpr std::array lightUse = {
    Source{Body::processor, 0.35},     Source{Body::regulators, 2.95}, Source{Body::board, 3.0},
    Source{Body::displayBridge, 2.65}, Source{Body::storage, 0.79},    Source{Body::ports, 0.78},
    Source{Body::battery, 2.2},
};

// All cores, and the graphics processor at full use: the regulators lose a part of each watt that they deliver.
constexpr std::array allCores = {
    Source{Body::processor, 5.3},
    Source{Body::regulators, 1.45},
    Source{Body::board, 0.6},
};
constexpr std::array fullGraphics = {
    Source{Body::graphics, 8.3},
    Source{Body::regulators, 0.66},
    Source{Body::board, 0.84},
};

// Charging at full power. The battery's current then goes no longer through the regulators, which cool a little.
constexpr std::array fullCharging = {
    Source{Body::ports, 0.60},
    Source{Body::battery, 0.12},
    Source{Body::regulators, -0.15},
    Source{Body::displayBridge, -0.10},
};
constexpr double fullChargingWatts = 20.0;

// A real graphics processor copies tens of gigabytes a second. The host's processor, which plays it here beside the
// other heaters, comes to a few: from this rate on it counts as busy.
constexpr double fullCopyBytesPerSecond = 1024.0 * 1024.0 * 1024.0;

std::size_t index(Body body)
{
    return static_cast<std::size_t>(body);
}

// The fast cores come first and draw most: one of eight busy makes a third of the heat of all, four make four fifths.
double heatOfCores(double busyShare)
{
    const double share = std::clamp(busyShare, 0.0, 1.0);
    return share * 1.36 / (share + 0.36);
}

PerBody<double> wattsInto(const ThermalLoad &load)
{
    PerBody<double> watts{};
    const auto add = [&watts](const auto &sources, double factor) {
        for (const auto &source : sources)
            watts[index(source.body)] += factor * source.watts;
    };
    if (load.switchedOn)
        add(lightUse, 1.0);
    add(allCores, heatOfCores(load.busyShare));
    add(fullGraphics, std::clamp(load.copyBytesPerSecond / fullCopyBytesPerSecond, 0.0, 1.0));
    add(fullCharging, std::clamp(load.chargingWatts / fullChargingWatts, 0.0, 1.0));
    return watts;
}

// The network and what drives it as one linear system, d/dt (T, 1) = M (T, 1), T above the room.
constexpr std::size_t order = bodyCount + 1;
using Matrix = std::array<std::array<double, order>, order>;

Matrix multiplied(const Matrix &a, const Matrix &b)
{
    Matrix product{};
    for (std::size_t row = 0; row < order; ++row)
        for (std::size_t inner = 0; inner < order; ++inner)
            for (std::size_t column = 0; column < order; ++column)
                product[row][column] += a[row][inner] * b[inner][column];
    return product;
}

Matrix rates(const PerBody<double> &watts)
{
    Matrix m{};
    for (std::size_t i = 0; i < bodyCount; ++i) {
        m[i][i] -= leakToRoom[i];
        m[i][bodyCount] = watts[i];
    }
    for (const auto &joint : joints) {
        const auto a = index(joint.one);
        const auto b = index(joint.other);
        m[a][a] -= joint.wattsPerKelvin;
        m[a][b] += joint.wattsPerKelvin;
        m[b][b] -= joint.wattsPerKelvin;
        m[b][a] += joint.wattsPerKelvin;
    }
    for (std::size_t row = 0; row < bodyCount; ++row)
        for (auto &rate : m[row])
            rate /= heatCapacity[row];
    return m;
}

// exp(m): a Taylor series over a span short against the fastest body, then doubled until it is long enough.
Matrix exponential(Matrix m)
{
    double norm = 0.0;
    for (const auto &row : m)
        for (const double value : row)
            norm = std::max(norm, std::abs(value));
    const int doublings = norm > 0.0 ? std::max(0, std::ilogb(norm) + 8) : 0;
    for (auto &row : m)
        for (auto &value : row)
            value = std::ldexp(value, -doublings);

    Matrix sum{};
    for (std::size_t i = 0; i < order; ++i)
        sum[i][i] = 1.0;
    Matrix term = sum;
    for (int n = 1; n <= 6; ++n) {
        term = multiplied(term, m);
        for (std::size_t row = 0; row < order; ++row)
            for (std::size_t column = 0; column < order; ++column)
                sum[row][column] += (term[row][column] /= n);
    }
    for (int i = 0; i < doublings; ++i)
        sum = multiplied(sum, sum);
    return sum;
}

} // namespace

ThermalModel::ThermalModel(double roomCelsius)
{
    setAll(roomCelsius);
}

void ThermalModel::setAll(double celsius)
{
    temperatures.fill(celsius);
}

void ThermalModel::step(std::chrono::duration<double> duration, const ThermalLoad &load, double roomCelsius)
{
    if (!(duration.count() > 0.0))
        return;
    auto m = rates(wattsInto(load));
    for (auto &row : m)
        for (auto &value : row)
            value *= duration.count();
    const auto passage = exponential(m);

    auto before = temperatures;
    for (auto &value : before)
        value -= roomCelsius;
    for (std::size_t row = 0; row < bodyCount; ++row) {
        double after = passage[row][bodyCount];
        for (std::size_t column = 0; column < bodyCount; ++column)
            after += passage[row][column] * before[column];
        temperatures[row] = roomCelsius + after;
    }
}

double ThermalModel::storedJoules() const
{
    double joules = 0.0;
    for (std::size_t i = 0; i < bodyCount; ++i)
        joules += heatCapacity[i] * temperatures[i];
    return joules;
}

double ThermalModel::leakWatts(double roomCelsius) const
{
    double watts = 0.0;
    for (std::size_t i = 0; i < bodyCount; ++i)
        watts += leakToRoom[i] * (temperatures[i] - roomCelsius);
    return watts;
}

double ThermalModel::inputWatts(const ThermalLoad &load)
{
    double sum = 0.0;
    for (const double watts : wattsInto(load))
        sum += watts;
    return sum;
}

} // namespace orvalen
