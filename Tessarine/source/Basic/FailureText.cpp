#include "FailureText.h"
#include "Assert.h"
#include "CExcp.h"
#include "Failure.h"
#include <exception>
#include <new>

namespace tessarine
{
namespace
{
/// A sentence for an exception of the system that carries no message.
std::string DescribeByClass(const IException& exception)
{
    if (dynamic_cast<const CExcpDivideZero*>(&exception) != nullptr)
    {
        return "a division by zero, or a vector of length zero";
    }
    if (dynamic_cast<const CExcpSingularMatrix*>(&exception) != nullptr)
    {
        return "a matrix that has no inverse";
    }
    return "an error that has no description";
}
}

std::string DescribeFailure(const std::string& outcome)
{
    try
    {
        throw;
    }
    catch (const AssertionFailure& failure)
    {
        const AssertionSite& site = failure.GetSite();
        return std::string("an internal check failed: ") + site.expression + " (" + site.path + ", line " +
               std::to_string(site.line) + ")" + outcome;
    }
    catch (const Failure& failure)
    {
        return failure.GetMessage();
    }
    catch (const IException& exception)
    {
        const std::string& message = exception.GetMessage();
        const bool isContextOnly = message.empty() || message.back() == ' ';
        return message + (isContextOnly ? DescribeByClass(exception) : "") + outcome;
    }
    catch (const std::bad_alloc&)
    {
        return "not enough memory" + outcome;
    }
    catch (const std::exception& exception)
    {
        return exception.what();
    }
    catch (...)
    {
        return "an unknown error" + outcome;
    }
}
}
