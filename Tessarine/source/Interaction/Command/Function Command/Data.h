#pragma once
#include <iosfwd>
#include <vector>

namespace tessarine
{
/// An ordered array of double values, searched by value and treated as a ring: the last element's next is the
/// first. Values are compared exactly.
///
/// Says    The message box "Error : Data Not In This Array" when the neighbour of an absent value is asked
///         for; 0.0 is given then.
/// Fails   An index outside the array, and the removal of an absent value, are assertions.
/// Cost    Linear in the size for everything that searches.
class Data
{
public:
    Data() = default;
    /// By element: the copy has the default growth step.
    Data(const Data& other);
    /// By element: the growth step stays this array's own.
    Data& operator=(const Data& other);
    virtual ~Data() = default;

    int GetSize() const { return static_cast<int>(m_Elements.size()); }
    int GetCapacity() const { return static_cast<int>(m_Elements.capacity()); }

    /// How many elements the storage grows by at least. 0: an eighth of the size, from 4 to 1024.
    void SetGrowthStep(int nGrowthStep);

    double operator[](int nIndex) const;
    double& operator[](int nIndex);

    /// Index of the first element equal to the value, or -1.
    int Find(double value) const;
    double Next(double value) const;
    double Previous(double value) const;

    void Append(double value);
    /// Appends a value that is not there yet.
    void AddUnique(double value);
    /// Removes the first occurrence.
    void Remove(double value);
    /// Removes the last element and gives it; 0.0 from an empty array.
    double PopLast();

    /// The number of elements in 32 bits, then their bits, in the machine's byte order.
    virtual void Serialize(std::ostream& stream) const;
    /// Reads what Serialize wrote. Throws Failure, and leaves the array as it was, when the stream ends
    /// early.
    virtual void Deserialize(std::istream& stream);
    /// Writes "with N elements".
    virtual void Dump(std::ostream& stream) const;

private:
    int FindOrComplain(double value) const;
    void MakeRoomFor(int nRequested);

    std::vector<double> m_Elements;
    int m_nGrowthStep = 0;
};
}
