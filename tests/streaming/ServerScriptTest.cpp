#include "streaming/ServerScript.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace orvalen {
namespace {

TEST(ServerScript, itsFirstLineNamesTheServerAsItsInterpreter)
{
    const auto script = serverScript("/opt/orvalen/libexec/orvalen/orvalen-stream-server");
    EXPECT_EQ(script.substr(0, script.find('\n')), "#!/opt/orvalen/libexec/orvalen/orvalen-stream-server");
}

TEST(ServerScript, allElseIsCommentWhoeverReadsIt)
{
    std::istringstream script(serverScript("/server"));
    int lines = 0;
    for (std::string line; std::getline(script, line); ++lines)
        EXPECT_EQ(line.front(), '#') << line;
    EXPECT_GT(lines, 2);
    EXPECT_EQ(serverScript("/server").back(), '\n');
}

} // namespace
} // namespace orvalen
