#pragma once

#include <string>

#include "streaming/screencapture/CaptureBackEnd.h"

namespace orvalen {

/// An X server's root window, with the monitors that its RandR extension tells of. The server is kept from drawing from
/// a picture's first strip to its last, so that all are of one moment.
class CaptureBackEndX11 : public CaptureBackEnd
{
public:
    /// `display`: a server's name; empty for the one that the environment names. Connects when it is first asked.
    explicit CaptureBackEndX11(std::string display = {});
    ~CaptureBackEndX11() override;

    [[nodiscard]] std::string obstacle() override;
    [[nodiscard]] std::vector<Display> displays() override;

    /// Refuses while a screen saver covers the screen: the session is locked then, or its owner believes that its
    /// screen shows nothing. A display that went dark by itself is captured as ever.
    [[nodiscard]] std::unique_ptr<Picture> open(const Display &display, unsigned lanes) override;

private:
    class Server;
    const std::string name;
    std::unique_ptr<Server> server;
};

} // namespace orvalen
