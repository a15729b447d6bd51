#include "threads/KalviDspCallStack.h"

#include "math/KalviDspVector.h"
#include "text/KalviDspStringList.h"

#include <cstdlib>
#include <cxxabi.h>
#include <execinfo.h>
#include <memory>

namespace vlk {

namespace {

constexpr std::size_t tokensPerFrame = 6;
constexpr std::size_t symbolToken = 3;
constexpr std::size_t demangleBufferSize = 8192;

// A failed demangling yields the token itself: it is no mangled name, and that is its name.
String demangle(const String& symbol)
{
    if (symbol == "main")
        return "main()";
    if (symbol == "start")
        return "start()";
    char buffer[demangleBufferSize];
    std::size_t length = sizeof(buffer);
    int status = 0;
    char* demangled = abi::__cxa_demangle(symbol.c_str(), buffer, &length, &status);
    if (status != 0 || demangled == nullptr)
        return symbol;
    String name(demangled);
    // A name longer than the buffer is returned in memory that __cxa_demangle allocated.
    if (demangled != buffer)
        std::free(demangled);
    return name;
}

String describeFrame(const char* symbolLine, bool namesOnly)
{
    Vector<String> tokens = split(String(symbolLine), ' ');
    if (tokens.size() != tokensPerFrame)
        return String();
    tokens[symbolToken] = demangle(tokens[symbolToken]);
    return namesOnly ? tokens[symbolToken] : join(tokens, " ");
}

} // namespace

Vector<String> getCallStack(int maxFrames, bool namesOnly)
{
    Vector<String> stack;
    if (maxFrames < 1)
        return stack;
    Vector<void*> addresses(static_cast<std::size_t>(maxFrames) + 1);
    const int numFrames = backtrace(addresses.data(), maxFrames);
    if (numFrames < 3)
        return stack;
    const std::unique_ptr<char*, decltype(&std::free)> symbols(backtrace_symbols(addresses.data(), numFrames),
                                                               &std::free);
    if (symbols == nullptr)
        return stack;
    // The two outermost frames are dropped, the innermost kept.
    for (int frame = 0; frame < numFrames - 2; ++frame)
        stack.push_back(describeFrame(symbols.get()[frame], namesOnly));
    return stack;
}

String getCallerName()
{
    // Four frames give at most two entries, so entry 3 is never there; the constants are kept as they are.
    const Vector<String> stack = getCallStack(4, true);
    return stack.size() >= 4 ? stack[3] : String();
}

} // namespace vlk
