#pragma once

#include <QCoreApplication>
#include <QString>

#include <optional>
#include <string>

#include "streaming/OfflineBridgeManager.h"
#include "streaming/QRCodeHelper.h"
#include "ui/kit/Shade.h"

namespace orvalen {

/// What the views of the screen stream say and in which colour, as functions of what is known.
struct StreamRules
{
    Q_DECLARE_TR_FUNCTIONS(StreamRules)

public:
    // The button in the side column.
    [[nodiscard]] static QString offlineLabel(bool isRunning);
    [[nodiscard]] static kit::Accent buttonAccent(bool isRunning);
    [[nodiscard]] static kit::Shade dotShade(bool isRunning);
    [[nodiscard]] static QString dotName(bool isRunning); ///< What the dot says without colour.

    // The cards.
    [[nodiscard]] static QString browserBadge(bool isRunning);
    [[nodiscard]] static QString browserLabel(bool isRunning);
    [[nodiscard]] static QString bridgeBadge(const USBBridgeInfo &bridge);
    [[nodiscard]] static kit::Accent bridgeAccent(const USBBridgeInfo &bridge);

    // Addresses.
    [[nodiscard]] static bool isBridgeThere(const USBBridgeInfo &bridge) { return bridge.isDetected; }
    [[nodiscard]] static bool isBridgeMissing(const USBBridgeInfo &bridge) { return !bridge.isDetected; }
    [[nodiscard]] static QString bridgeLine(const USBBridgeInfo &bridge);
    [[nodiscard]] static QString usbLink(const std::string &usbIP, int port); ///< As it is copied.
    [[nodiscard]] static bool hasCode(const std::optional<QRCodeImage> &code) { return code.has_value(); }
};

} // namespace orvalen
