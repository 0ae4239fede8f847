#include "Data.h"
#include "Assert.h"
#include "Failure.h"
#include "Platform.h"
#include <algorithm>
#include <cstdint>
#include <istream>
#include <ostream>
#include <string>

namespace tessarine
{
namespace
{
constexpr int kLeastAutomaticStep = 4;
constexpr int kMostAutomaticStep = 1024;

template <class T>
T ReadBits(std::istream& stream)
{
    T value{};
    if (!stream.read(reinterpret_cast<char*>(&value), sizeof value))
    {
        throw Failure("The stored array is cut short: store it again and read it whole.");
    }
    return value;
}

std::int32_t ReadSize(std::istream& stream)
{
    const auto nSize = ReadBits<std::int32_t>(stream);
    if (nSize < 0)
    {
        throw Failure("What is stored here is no array: its size is negative. Store the array again.");
    }
    return nSize;
}

template <class T>
void WriteBits(std::ostream& stream, const T& value)
{
    stream.write(reinterpret_cast<const char*>(&value), sizeof value);
}
}

Data::Data(const Data& other)
{
    *this = other;
}

Data& Data::operator=(const Data& other)
{
    if (this != &other)
    {
        MakeRoomFor(other.GetSize());
        m_Elements.assign(other.m_Elements.begin(), other.m_Elements.end());
    }
    return *this;
}

void Data::SetGrowthStep(int nGrowthStep)
{
    ASSERT(nGrowthStep >= 0);
    m_nGrowthStep = nGrowthStep;
}

double Data::operator[](int nIndex) const
{
    ASSERT(nIndex >= 0 && nIndex < GetSize());
    return m_Elements[static_cast<std::size_t>(nIndex)];
}

double& Data::operator[](int nIndex)
{
    ASSERT(nIndex >= 0 && nIndex < GetSize());
    return m_Elements[static_cast<std::size_t>(nIndex)];
}

int Data::Find(double value) const
{
    const auto found = std::find(m_Elements.begin(), m_Elements.end(), value);
    return found == m_Elements.end() ? -1 : static_cast<int>(found - m_Elements.begin());
}

int Data::FindOrComplain(double value) const
{
    const int nIndex = Find(value);
    if (nIndex == -1)
    {
        ShowMessage("Error : Data Not In This Array");
    }
    return nIndex;
}

double Data::Next(double value) const
{
    const int nIndex = FindOrComplain(value);
    return nIndex == -1 ? 0.0 : (*this)[(nIndex + 1) % GetSize()];
}

double Data::Previous(double value) const
{
    const int nIndex = FindOrComplain(value);
    return nIndex == -1 ? 0.0 : (*this)[nIndex == 0 ? GetSize() - 1 : nIndex - 1];
}

void Data::Append(double value)
{
    MakeRoomFor(GetSize() + 1);
    m_Elements.push_back(value);
}

void Data::AddUnique(double value)
{
    if (Find(value) == -1)
    {
        Append(value);
    }
}

void Data::Remove(double value)
{
    const int nIndex = Find(value);
    ASSERT(nIndex != -1);
    m_Elements.erase(m_Elements.begin() + nIndex);
}

double Data::PopLast()
{
    if (m_Elements.empty())
    {
        return 0.0;
    }
    const double last = m_Elements.back();
    m_Elements.pop_back();
    return last;
}

void Data::Serialize(std::ostream& stream) const
{
    WriteBits(stream, static_cast<std::int32_t>(GetSize()));
    for (const double element : m_Elements)
    {
        WriteBits(stream, element);
    }
}

void Data::Deserialize(std::istream& stream)
{
    Data read;
    const std::int32_t nSize = ReadSize(stream);
    for (std::int32_t i = 0; i < nSize; ++i) // grows as it reads: the number may lie
    {
        read.Append(ReadBits<double>(stream));
    }
    *this = read;
}

void Data::Dump(std::ostream& stream) const
{
    stream << "with " << std::to_string(GetSize()) << " elements";
}

void Data::MakeRoomFor(int nRequested)
{
    if (nRequested <= GetCapacity())
    {
        return;
    }
    const int nStep = m_nGrowthStep > 0 ? m_nGrowthStep
                                        : std::clamp(GetSize() / 8, kLeastAutomaticStep, kMostAutomaticStep);
    m_Elements.reserve(static_cast<std::size_t>(std::max(nRequested, GetCapacity() + nStep)));
}
}
