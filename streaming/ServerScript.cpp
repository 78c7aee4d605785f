#include "streaming/ServerScript.h"

namespace orvalen {

std::string serverScript(std::string_view serverProgram)
{
    std::string script = "#!";
    script += serverProgram;
    script += R"(
# The screen stream of Orvalen. Everything that it does is in the program named above, which pays no attention to
# this text; the name of this file on its command line is how a server that was left running is recognised.
#
# Orvalen writes this file anew whenever it starts the stream. Run it to serve the screen without Orvalen.
)";
    return script;
}

} // namespace orvalen
