// The batch tool's language: a script, and the words of a command line. Nothing of it is run.
#include "CommandLine.h"
#include "Operations.h"
#include <cstdint>
#include <cstdlib>
#include <sstream>

namespace
{
using namespace tessarine;

void Demand(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}

template <class TParse>
void Try(TParse parse)
{
    try
    {
        parse();
    }
    catch (const UsageError& error)
    {
        Demand(*error.what() != '\0');
    }
}

void ReadScript(const std::string& text)
{
    for (const OperationCall& call : ParseScript(text, "script"))
    {
        Demand(call.pOperation == FindOperation(call.pOperation->name));
    }
}

void ReadWords(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
    {
        words.push_back(word);
    }
    const BatchOptions options = ParseOptions(words);
    Demand(options.viewWidth > 0 && options.viewHeight > 0 && options.threads > 0);
    ParseOperations(options.words);
}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(data, data + size);
    Try([&] { ReadScript(text); });
    Try([&] { ReadWords(text); });
    return 0;
}
