#pragma once
#include "MANBrepElementManager.h"

namespace tessarine
{
/// A mesh as plain lists, ready for the builders: one-based numbers, the faces one behind the other.
struct IndexedMesh
{
    PositionList positions;
    IndexList indices;
    IndexList faceSizes;

    void AddFace(std::initializer_list<std::int32_t> corners);
    std::size_t CountFaces() const { return faceSizes.size(); }
};

IndexedMesh SingleTriangle();
/// The origin and the ends of the three axes. Closed meshes turn their faces outward.
IndexedMesh Tetrahedron();
/// (1,1,1), (1,-1,-1), (-1,1,-1), (-1,-1,1), in this order.
IndexedMesh CentredTetrahedron();
/// The cube from 0 to 1 with six quadrilaterals.
IndexedMesh QuadCube();
/// The same with twelve triangles.
IndexedMesh TriangleCube();
/// n triangles side by side around vertex 1, in the upper half plane.
IndexedMesh OpenFan(int n);
/// n triangles all around vertex 1; n is 3 or more.
IndexedMesh ClosedFan(int n);
/// n by n squares of the unit square's plane, two triangles each.
IndexedMesh Grid(int n);
/// An octahedron of 8 * 4^levels triangles on the unit sphere.
IndexedMesh Sphere(int levels);
/// n around the axis, m around the tube, 2nm triangles; both are 3 or more.
IndexedMesh Torus(int n, int m);
/// The same of nm quadrilaterals.
IndexedMesh QuadTorus(int n, int m);
/// Faces 1 and 2 run against each other along the edge 1-2, face 3 runs along with face 1.
IndexedMesh ThreeTrianglesOnOneEdge();
/// Two triangles that share vertex 1 and nothing else.
IndexedMesh BowTie();
/// Three corners on one line.
IndexedMesh DegenerateTriangle();
/// A closed prism of unit radius from z = -1 to 1: two faces with n corners and n quadrilaterals.
IndexedMesh Prism(int n);
/// An arrow, an angle and a star side by side in the plane z = 0, each one face with notches; of the star it
/// depends on the corner that it is drawn from what is seen.
IndexedMesh NotchedFaces();
/// n unit squares in one place, each with corners of its own.
IndexedMesh StackedSquares(int n);

/// The mesh scaled about the origin, then moved.
IndexedMesh Placed(IndexedMesh mesh, double scale, const smVec3d& offset);

/// Builds the mesh as an import without materials does. What it says on the console is lost.
DSSolid* LoadQuietly(MANBrepElementManager& manager, const IndexedMesh& mesh);
}
