#pragma once
#include "IACommand.h"
#include "smVec3d.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
class DSVertex;
class MANBrepElementManager;

/// Base of the commands that move what is selected, by its vertices: a tool runs one of them once for each
/// motion of the mouse. Positions change, the topology does not; normals that are not told of stay as they are.
///
/// Needs   The element manager, and the command's type of selection in force (asserted). An id that names no
///         element is an assertion.
/// Fails   A run that would lead to a position which is no finite number throws Failure, and moves nothing.
class IAMoveCommand : public IACommand
{
public:
    void SetElementManager(MANBrepElementManager* manager) { m_pElementManager = manager; }
    /// kAlongNormal stands for the normals.
    void SetDirection(const smVec3d& direction) { m_Direction = direction; }
    /// How far the next run moves.
    void SetDistance(double distance) { m_dDistance = distance; }

    static constexpr smVec3d kAlongNormal{1.0, 1.0, 1.0};

    /// Keeps where the vertices are now, for Undo.
    void SavePositions();
    /// Whether what is selected is still there, with as many vertices as were kept.
    bool CanUndo() const;
    /// Puts the vertices back to where they were kept. CanUndo is asserted.
    void Undo() override;

protected:
    /// @param selectType whose elements it moves (SelectType)
    explicit IAMoveCommand(std::uint32_t selectType) : m_nSelectType(selectType) {}

    /// The vertices of what is selected, in a fixed order; one that two selected elements share comes twice.
    virtual std::vector<DSVertex*> CollectVertices() const = 0;

    /// The ids of what is selected. Asserts the manager and the type.
    const std::vector<std::uint32_t>& GetSelection() const;
    MANBrepElementManager& GetElements() const { return *m_pElementManager; }
    bool IsAlongNormal() const;
    /// The way of a run along an axis.
    smVec3d GetStep() const { return m_Direction * m_dDistance; }
    double GetDistance() const { return m_dDistance; }

private:
    const std::uint32_t m_nSelectType;
    smVec3d m_Direction;
    double m_dDistance = 0.0;
    MANBrepElementManager* m_pElementManager = nullptr;
    std::vector<smVec3d> m_SavedPositions;
};
}
