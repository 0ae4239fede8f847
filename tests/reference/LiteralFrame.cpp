#include "LiteralFrame.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "OCTNODE.h"
#include "Open3DView.h"
#include <GL/glu.h>
#include <array>
#include <cmath>
#include <map>

namespace tessarine
{
namespace
{
enum class MarkKind
{
    Selected,
    Hover
};

/// The vertices at the two ends of an edge.
struct Ends
{
    const DSVertex* first;
    const DSVertex* second;
};

Ends FindEnds(const DSEdge& edge)
{
    const DSHalfEdge* one = edge.GetHalfEdge1();
    const DSHalfEdge* two = edge.GetHalfEdge2();
    if (one == nullptr && two == nullptr)
    {
        return {nullptr, nullptr};
    }
    return {one != nullptr ? one->GetVertex() : two->GetNext()->GetVertex(),
            two != nullptr ? two->GetVertex() : one->GetNext()->GetVertex()};
}

void SendPoint(const smVec3d& point)
{
    glVertex3d(point.x, point.y, point.z);
}

void SendNormal(const smVec3d& normal)
{
    glNormal3d(normal.x, normal.y, normal.z);
}

void SendSegment(const smVec3d& from, const smVec3d& to)
{
    SendPoint(from);
    SendPoint(to);
}

void SendEdge(const DSEdge& edge)
{
    const Ends ends = FindEnds(edge);
    if (ends.first != nullptr)
    {
        SendSegment(ends.first->GetPosition(), ends.second->GetPosition());
    }
}

template <class TSend>
void ForEachCorner(const DSFace& face, TSend send)
{
    const DSHalfEdge* entry = face.GetLoopList()[0]->GetHalfEdge();
    const DSHalfEdge* halfEdge = entry;
    do
    {
        send(*halfEdge);
        halfEdge = halfEdge->GetNext();
    } while (halfEdge != entry);
}

bool IsZero(const smVec3d& vector)
{
    constexpr double kTolerance = 1e-10;
    return std::abs(vector.x) < kTolerance && std::abs(vector.y) < kTolerance &&
           std::abs(vector.z) < kTolerance;
}

void SetMaterialColor(GLenum name, const smVec3f& color, float alpha)
{
    const std::array<float, 4> values{color.x, color.y, color.z, alpha};
    glMaterialfv(GL_FRONT, name, values.data());
}

void ApplyMaterial(const DSMaterial& material)
{
    SetMaterialColor(GL_DIFFUSE, material.m_Diffuse, material.m_fTransparency);
    SetMaterialColor(GL_AMBIENT, material.m_Ambient, material.m_fTransparency);
    SetMaterialColor(GL_SPECULAR, material.m_Specular, material.m_fTransparency);
    glMaterialfv(GL_FRONT, GL_SHININESS, &material.m_fShininess);
    SetMaterialColor(GL_EMISSION, material.m_Emission, 0.0F);
}

void SetLightColor(GLenum light, GLenum name, const smVec3f& color)
{
    const std::array<float, 4> values{color.x, color.y, color.z, 1.0F};
    glLightfv(light, name, values.data());
}

void SetSwitch(GLenum capability, bool isOn)
{
    if (isOn)
    {
        glEnable(capability);
    }
    else
    {
        glDisable(capability);
    }
}

/// The bytes of an image as three components a pixel, in rows of whole words, as an upload reads them.
std::vector<std::uint8_t> MakeColorRows(const DSTexture& texture)
{
    const int components = texture.GetComponents();
    if (components == 3 || components == 0) // a pixmap has three and does not count them
    {
        // Rows start at multiples of four bytes from here on, wherever the image has its own.
        std::vector<std::uint8_t> bytes = texture.GetData();
        const int rowBytes = (texture.GetWidth() * 3 + 3) / 4 * 4;
        bytes.resize(static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(texture.GetHeight()));
        return bytes;
    }
    std::vector<std::uint8_t> bytes;
    const std::uint8_t* pixel = texture.GetData().data();
    for (int y = 0; y < texture.GetHeight(); ++y)
    {
        for (int x = 0; x < texture.GetWidth(); ++x, pixel += components)
        {
            const bool isGrey = components < 3;
            bytes.insert(bytes.end(), {pixel[0], pixel[isGrey ? 0 : 1], pixel[isGrey ? 0 : 2]});
        }
        bytes.resize((bytes.size() + 3) / 4 * 4);
    }
    return bytes;
}

class LiteralFrame
{
public:
    LiteralFrame(const Open3DView& view, const MANSceneManager& scene, const MANBrepElementManager& elements)
        : m_View(view), m_Scene(scene), m_Elements(elements), m_nFlags(view.GetDisplayFlags())
    {
    }

    void Draw()
    {
        SetupFrame();
        DrawScene();
        if (Has(DisplayFlag::CutFaces))
        {
            DrawCutFaces();
        }
    }

private:
    bool Has(std::uint32_t flags) const { return (m_nFlags & flags) != 0; }

    void SetupFrame()
    {
        SetCamera();
        SetLights();
        const smVec3f& color = m_View.GetClearColor();
        glClearColor(color.x, color.y, color.z, 0.0F);
        glClearDepth(1.0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        if (Has(DisplayFlag::Grid))
        {
            DrawGrid();
        }
        if (Has(DisplayFlag::Axes))
        {
            DrawAxes();
        }
        SetRasterSwitches();
        DrawOverlays();
    }

    void SetCamera()
    {
        const Open3DCamera& camera = *m_View.GetCamera();
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(camera.GetFovy(), camera.GetAspect(), camera.GetNear(), camera.GetFar());
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        const smVec3d eye = camera.GetPosition();
        const smVec3d target = camera.GetTarget();
        const smVec3d up = camera.GetUp();
        gluLookAt(eye.x, eye.y, eye.z, target.x, target.y, target.z, up.x, up.y, up.z);
    }

    void SetLights()
    {
        GLenum number = GL_LIGHT0;
        for (const auto& light : m_Scene.GetLightList())
        {
            if (light->m_bAmbient)
            {
                SetLightColor(number, GL_AMBIENT, light->m_Ambient);
            }
            if (light->m_bDiffuse)
            {
                SetLightColor(number, GL_DIFFUSE, light->m_Diffuse);
            }
            if (light->m_bSpecular)
            {
                SetLightColor(number, GL_SPECULAR, light->m_Specular);
            }
            const smVec4f& place = light->m_Position;
            const std::array<float, 4> position{place.x, place.y, place.z, place.w};
            glLightfv(number, GL_POSITION, position.data());
            glEnable(number);
            ++number;
        }
        glEnable(GL_LIGHTING);
    }

    static void DrawGrid()
    {
        glDisable(GL_LIGHTING);
        glLineWidth(1.0F);
        glBegin(GL_LINES);
        for (int i = 0; i < 64; ++i)
        {
            SetGridColor(i);
            const double p = i * 0.5 - 15.75;
            SendSegment({-15.75, 0.0, p}, {15.75, 0.0, p});
        }
        for (int i = 0; i < 64; ++i)
        {
            SetGridColor(i);
            const double p = i * 0.5 - 15.75;
            SendSegment({p, 0.0, -15.75}, {p, 0.0, 15.75});
        }
        glEnd();
        glEnable(GL_LIGHTING);
    }

    static void SetGridColor(int i)
    {
        if ((i + 1) % 10 == 0)
        {
            glColor3f(0.0F, 0.0F, 0.0F);
        }
        else
        {
            glColor3f(0.3F, 0.3F, 0.3F);
        }
    }

    static void DrawAxes()
    {
        glDisable(GL_LIGHTING);
        glBegin(GL_LINES);
        for (int axis = 0; axis < 3; ++axis)
        {
            SetAxisColor(axis);
            SendSegment({0.0, 0.0, 0.0}, PlaceOnAxis(axis, 5.0, 0.0, 0.0));
        }
        for (int axis = 0; axis < 3; ++axis)
        {
            SetAxisColor(axis);
            SendArrowHead(axis);
        }
        glEnd();
        glEnable(GL_LIGHTING);
    }

    static void SetAxisColor(int axis)
    {
        glColor3f(axis == 0 ? 1.0F : 0.0F, axis == 1 ? 1.0F : 0.0F, axis == 2 ? 1.0F : 0.0F);
    }

    /// A point by its distance along an axis and along the two that follow it.
    static smVec3d PlaceOnAxis(int axis, double along, double second, double third)
    {
        smVec3d point;
        point[axis] = along;
        point[(axis + 1) % 3] = second;
        point[(axis + 2) % 3] = third;
        return point;
    }

    static void SendArrowHead(int axis)
    {
        constexpr double kRadius = 0.04;
        constexpr double kDiagonal = 0.028;
        constexpr std::array<std::array<double, 2>, 8> kRing{{{kRadius, 0.0},
                                                              {kDiagonal, kDiagonal},
                                                              {0.0, kRadius},
                                                              {-kDiagonal, kDiagonal},
                                                              {-kRadius, 0.0},
                                                              {-kDiagonal, -kDiagonal},
                                                              {0.0, -kRadius},
                                                              {kDiagonal, -kDiagonal}}};
        for (std::size_t sector = 0; sector < kRing.size(); ++sector)
        {
            const auto& from = kRing[sector];
            const auto& to = kRing[(sector + 1) % kRing.size()];
            for (int time = 0; time < 2; ++time)
            {
                SendSegment(PlaceOnAxis(axis, 4.9, from[0], from[1]), PlaceOnAxis(axis, 4.9, to[0], to[1]));
            }
            SendSegment(PlaceOnAxis(axis, 4.9, 0.0, 0.0), PlaceOnAxis(axis, 5.0, 0.0, 0.0));
        }
    }

    void SetRasterSwitches() const
    {
        const bool smoothPolygons = Has(DisplayFlag::PolygonSmoothing);
        SetSwitch(GL_POLYGON_SMOOTH, smoothPolygons);
        SetSwitch(GL_BLEND, smoothPolygons);
        if (smoothPolygons)
        {
            glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
            glHint(GL_POLYGON_SMOOTH_HINT, GL_NICEST);
        }
        const bool smoothLines = Has(DisplayFlag::LineSmoothing);
        SetSwitch(GL_LINE_SMOOTH, smoothLines);
        SetSwitch(GL_BLEND, smoothLines);
        if (smoothLines)
        {
            glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
            glHint(GL_LINE_SMOOTH_HINT, GL_NICEST);
        }
        const bool blends = Has(DisplayFlag::Blending);
        SetSwitch(GL_BLEND, blends);
        if (blends)
        {
            glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        }
    }

    void DrawOverlays()
    {
        if (Has(DisplayFlag::Octree))
        {
            DrawOctree(*m_View.GetOctree());
        }
        if (Has(DisplayFlag::PointCloud))
        {
            DrawCloud(m_View.GetPointCloud(), 1.0F, 0.0F, 0.0F);
        }
        if (Has(DisplayFlag::PointNormals))
        {
            DrawPointNormals();
        }
        if (Has(DisplayFlag::ProjectedPoints) && !m_View.GetProjectedPoints().empty())
        {
            DrawCloud(m_View.GetProjectedPoints(), 0.3F, 0.8F, 0.5F);
        }
        if (Has(DisplayFlag::ProjectionLines))
        {
            DrawProjectionLines();
        }
        if (Has(DisplayFlag::NewMesh) && m_View.GetNewMesh() != nullptr)
        {
            DrawNewMesh(*m_View.GetNewMesh());
        }
    }

    static void DrawOctree(const OCTNODE& node)
    {
        if (!node.IsLeaf())
        {
            for (const OCTNODE* child : node.GetChildren())
            {
                DrawOctree(*child);
            }
            return;
        }
        glDisable(GL_LIGHTING);
        glColor3f(0.0F, 1.0F, 1.0F);
        glBegin(GL_LINES);
        SendBox(node.GetMin(), node.GetMax());
        glEnd();
        glEnable(GL_LIGHTING);
    }

    static void SendBox(const smVec3d& low, const smVec3d& high)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            for (int side = 0; side < 4; ++side)
            {
                smVec3d from = high;
                from[(axis + 1) % 3] = (side & 1) != 0 ? low[(axis + 1) % 3] : high[(axis + 1) % 3];
                from[(axis + 2) % 3] = (side & 2) != 0 ? low[(axis + 2) % 3] : high[(axis + 2) % 3];
                smVec3d to = from;
                to[axis] = low[axis];
                SendSegment(from, to);
            }
        }
    }

    static void DrawCloud(const std::vector<smVec3d>& points, float red, float green, float blue)
    {
        glPushAttrib(GL_POINT_BIT);
        glDisable(GL_LIGHTING);
        glPointSize(2.0F);
        glColor3f(red, green, blue);
        glBegin(GL_POINTS);
        for (const smVec3d& point : points)
        {
            SendPoint(point);
        }
        glEnd();
        glPopAttrib();
        glEnable(GL_LIGHTING);
    }

    void DrawPointNormals() const
    {
        glPushAttrib(GL_LINE_BIT);
        glDisable(GL_LIGHTING);
        glLineWidth(1.0F);
        glColor3f(0.0F, 1.0F, 1.0F);
        glBegin(GL_LINES);
        for (std::size_t i = 0; i < m_View.GetPointCloud().size(); ++i)
        {
            const smVec3d& point = m_View.GetPointCloud()[i];
            SendSegment(point, point + m_View.GetPointNormals()[i] * 0.05);
        }
        glEnd();
        glPopAttrib();
        glEnable(GL_LIGHTING);
    }

    void DrawProjectionLines() const
    {
        glPushAttrib(GL_LINE_BIT);
        glDisable(GL_LIGHTING);
        glLineWidth(1.0F);
        glColor3f(1.0F, 0.0F, 0.0F);
        glLineStipple(1, 0xAAAA);
        glEnable(GL_LINE_STIPPLE);
        glBegin(GL_LINES);
        for (std::size_t i = 0; i < m_View.GetPointCloud().size(); ++i)
        {
            SendSegment(m_View.GetPointCloud()[i], m_View.GetProjectedPoints()[i]);
        }
        glEnd();
        glDisable(GL_LINE_STIPPLE);
        glPopAttrib();
        glEnable(GL_LIGHTING);
    }

    void DrawNewMesh(const DSSolid& solid)
    {
        DrawSolidMark(solid, MarkKind::Hover);
        if (Has(DisplayFlag::Wire))
        {
            DrawWire(solid);
        }
        if (Has(DisplayFlag::Points))
        {
            DrawPoints(solid);
        }
    }

    void DrawScene()
    {
        if (Has(DisplayFlag::Texture))
        {
            CreateTextures();
        }
        DrawGroup(*m_Scene.GetRootGroup());
        if (Has(DisplayFlag::Texture))
        {
            DeleteTextures();
        }
        for (const std::uint32_t id : m_Elements.GetSelectList())
        {
            DrawMark(id, MarkKind::Selected);
        }
        for (const std::uint32_t id : m_View.GetHoverList())
        {
            DrawMark(id, MarkKind::Hover);
        }
    }

    void DrawGroup(const MANSceneGroup& group)
    {
        if (!group.IsVisible())
        {
            return;
        }
        for (const MANSceneNode* child : group.GetChildren())
        {
            if ((child->GetID() & 0xF0000000) == 0xC0000000)
            {
                DrawGroup(static_cast<const MANSceneGroup&>(*child));
            }
            else
            {
                DrawLeaf(static_cast<const MANSceneLeaf&>(*child));
            }
        }
    }

    void DrawLeaf(const MANSceneLeaf& leaf)
    {
        if (!leaf.IsVisible() || leaf.GetSolid() == nullptr)
        {
            return;
        }
        const DSSolid& solid = *leaf.GetSolid();
        if (Has(DisplayFlag::Wire))
        {
            DrawWire(solid);
        }
        if (Has(DisplayFlag::FlatShading) || Has(DisplayFlag::SmoothShading))
        {
            if (solid.IsVisible())
            {
                DrawSolid(solid);
            }
        }
        else if (Has(DisplayFlag::Texture) && solid.IsVisible())
        {
            DrawTextured(solid);
        }
        if (Has(DisplayFlag::Points) && solid.IsVisible())
        {
            DrawPoints(solid);
        }
    }

    void DrawWire(const DSSolid& solid) const
    {
        glDisable(GL_LIGHTING);
        glLineWidth(1.0F);
        glBegin(GL_LINES);
        for (const DSEdge* edge : solid.GetEdgeList())
        {
            if (edge->GetHighlight())
            {
                glColor3f(1.0F, 0.0F, 0.0F);
            }
            else
            {
                glColor3f(0.5F, 0.7F, 0.4F);
            }
            SendEdge(*edge);
        }
        glEnd();
        if (Has(DisplayFlag::BoundaryEdges))
        {
            DrawBoundary(solid);
        }
        glEnable(GL_LIGHTING);
    }

    static void DrawBoundary(const DSSolid& solid)
    {
        glPushAttrib(GL_LINE_BIT);
        glColor3f(0.2F, 1.0F, 0.2F);
        glLineWidth(2.0F);
        glBegin(GL_LINES);
        for (const DSEdge* edge : solid.GetEdgeList())
        {
            if (edge->IsBoundary())
            {
                SendEdge(*edge);
            }
        }
        glEnd();
        glPopAttrib();
    }

    void DrawSolid(const DSSolid& solid) const
    {
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1.0F, 1.0F);
        for (const DSFace* face : solid.GetFaceList())
        {
            ApplyMaterial(face->GetMaterial() != nullptr
                              ? *face->GetMaterial()
                              : m_Elements.GetMaterialManager().GetDefaultMaterial());
            DrawPolygon(*face, Has(DisplayFlag::FlatShading));
        }
        glDisable(GL_POLYGON_OFFSET_FILL);
    }

    void DrawPolygon(const DSFace& face, bool withFaceNormal) const
    {
        if (withFaceNormal)
        {
            SendNormal(face.GetNormal());
        }
        glBegin(GL_POLYGON);
        ForEachCorner(face,
                      [this](const DSHalfEdge& corner)
                      {
                          if (Has(DisplayFlag::SmoothShading))
                          {
                              SendNormal(corner.GetVertex()->GetNormal());
                          }
                          SendPoint(corner.GetVertex()->GetPosition());
                      });
        glEnd();
    }

    void CreateTextures()
    {
        for (const auto& entry : m_Elements.GetMaterialManager().GetImageList())
        {
            if (entry->m_pTexture == nullptr)
            {
                continue;
            }
            GLuint name = 0;
            glGenTextures(1, &name);
            m_TextureNames[entry.get()] = name;
            glBindTexture(GL_TEXTURE_2D, name);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR_MIPMAP_LINEAR);
            glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
            const DSTexture& texture = *entry->m_pTexture;
            gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGB, texture.GetWidth(), texture.GetHeight(), GL_RGB,
                              GL_UNSIGNED_BYTE, MakeColorRows(texture).data());
            glGetError();
        }
    }

    void DeleteTextures()
    {
        for (const auto& entry : m_Elements.GetMaterialManager().GetImageList())
        {
            const GLuint name = m_TextureNames[entry.get()];
            glDeleteTextures(1, &name);
        }
    }

    void DrawTextured(const DSSolid& solid)
    {
        for (const DSFace* face : solid.GetFaceList())
        {
            const DSMaterial* material = face->GetMaterial();
            const DSTextureBinding* texture = material != nullptr ? material->m_pTexture : nullptr;
            if (texture != nullptr)
            {
                glEnable(GL_TEXTURE_2D);
                glBindTexture(GL_TEXTURE_2D, m_TextureNames[texture]);
            }
            DrawTexturedPolygon(*face, texture != nullptr);
            glDisable(GL_TEXTURE_2D);
        }
    }

    static void DrawTexturedPolygon(const DSFace& face, bool withTexCoords)
    {
        SendNormal(face.GetNormal());
        glBegin(GL_POLYGON);
        ForEachCorner(face,
                      [withTexCoords](const DSHalfEdge& corner)
                      {
                          SendNormal(corner.GetVertex()->GetNormal());
                          if (withTexCoords)
                          {
                              glTexCoord2f(corner.GetTexCoord().x, corner.GetTexCoord().y);
                          }
                          SendPoint(corner.GetVertex()->GetPosition());
                      });
        glEnd();
    }

    static void DrawPoints(const DSSolid& solid)
    {
        glPushAttrib(GL_POINT_BIT);
        glDisable(GL_LIGHTING);
        glPointSize(1.0F);
        glBegin(GL_POINTS);
        for (const DSVertex* vertex : solid.GetVertexList())
        {
            if (vertex == nullptr)
            {
                continue;
            }
            if (IsZero(vertex->GetNormal()))
            {
                glColor3f(1.0F, 0.0F, 0.0F);
            }
            else
            {
                glColor3f(1.0F, 1.0F, 1.0F);
            }
            SendPoint(vertex->GetPosition());
        }
        glEnd();
        glPopAttrib();
        DrawSelectedPoints(solid);
        glEnable(GL_LIGHTING);
    }

    static void DrawSelectedPoints(const DSSolid& solid)
    {
        glPushAttrib(GL_POINT_BIT);
        glPointSize(4.0F);
        glColor3f(0.5F, 1.0F, 0.2F);
        glBegin(GL_POINTS);
        for (const DSVertex* vertex : solid.GetVertexList())
        {
            if (vertex != nullptr && vertex->IsSelected())
            {
                SendPoint(vertex->GetPosition());
            }
        }
        glEnd();
        glPopAttrib();
    }

    template <class T>
    static const T* FindRecord(const RecordArray<T>& records, std::uint32_t id)
    {
        const std::uint32_t index = id & 0x0FFFFFFF;
        return index < records.size() ? records[index] : nullptr;
    }

    void DrawMark(std::uint32_t id, MarkKind kind)
    {
        const bool isFilled = Has(DisplayFlag::FlatShading | DisplayFlag::SmoothShading);
        switch (id & 0xF0000000)
        {
        case ElementKind::Solid:
            if (const DSSolid* solid = FindRecord(m_Elements.GetSolidArray(), id);
                solid != nullptr && isFilled)
            {
                DrawSolidMark(*solid, kind);
            }
            break;
        case ElementKind::Face:
            if (const DSFace* face = FindRecord(m_Elements.GetFaceArray(), id); face != nullptr && isFilled)
            {
                DrawFaceMark(*face, kind);
            }
            break;
        case ElementKind::Edge:
            if (const DSEdge* edge = FindRecord(m_Elements.GetEdgeArray(), id);
                edge != nullptr && (isFilled || Has(DisplayFlag::Wire)))
            {
                DrawEdgeMark(*edge, kind);
            }
            break;
        case ElementKind::Vertex:
            if (const DSVertex* vertex = FindRecord(m_Elements.GetVertexArray(), id);
                vertex != nullptr && (isFilled || Has(DisplayFlag::Wire | DisplayFlag::Points)))
            {
                DrawVertexMark(*vertex, kind);
            }
            break;
        default: break; // no vertex has such an id
        }
    }

    static smVec3f GetMarkColor(const DSElement& element, MarkKind kind)
    {
        if (kind == MarkKind::Selected)
        {
            return {1.0F, 0.0F, 0.0F};
        }
        return element.IsSelected() ? smVec3f(1.0F, 1.0F, 0.0F) : smVec3f(0.0F, 0.0F, 1.0F);
    }

    static void SetMarkColor(const DSElement& element, MarkKind kind)
    {
        const smVec3f color = GetMarkColor(element, kind);
        glColor3f(color.x, color.y, color.z);
    }

    static void DrawVertexMark(const DSVertex& vertex, MarkKind kind)
    {
        glPushAttrib(GL_POINT_BIT);
        glDisable(GL_LIGHTING);
        glPointSize(5.0F);
        SetMarkColor(vertex, kind);
        glBegin(GL_POINTS);
        SendPoint(vertex.GetPosition());
        glEnd();
        glPopAttrib();
        glEnable(GL_LIGHTING);
    }

    static void DrawEdgeMark(const DSEdge& edge, MarkKind kind)
    {
        glPushAttrib(GL_LINE_BIT);
        glDisable(GL_LIGHTING);
        glLineWidth(2.0F);
        SetMarkColor(edge, kind);
        glBegin(GL_LINES);
        SendEdge(edge);
        glEnd();
        glPopAttrib();
        glEnable(GL_LIGHTING);
    }

    void DrawFaceMark(const DSFace& face, MarkKind kind) const
    {
        glPushAttrib(GL_LIGHTING_BIT);
        SetMaterialColor(GL_DIFFUSE, GetMarkColor(face, kind), 1.0F);
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1.0F, 1.0F);
        DrawPolygon(face, Has(DisplayFlag::FlatShading));
        glDisable(GL_POLYGON_OFFSET_FILL);
        glPopAttrib();
    }

    void DrawSolidMark(const DSSolid& solid, MarkKind kind) const
    {
        glPushAttrib(GL_LIGHTING_BIT);
        SetMaterialColor(GL_DIFFUSE, GetMarkColor(solid, kind), 1.0F);
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1.0F, 1.0F);
        for (const DSFace* face : solid.GetFaceList())
        {
            DrawPolygon(*face, Has(DisplayFlag::FlatShading | DisplayFlag::NewMesh));
        }
        glDisable(GL_POLYGON_OFFSET_FILL);
        glPopAttrib();
    }

    void DrawCutFaces() const
    {
        for (const CutFace& quad : m_Scene.GetCutFaceList())
        {
            glPushAttrib(GL_LINE_BIT);
            glDisable(GL_LIGHTING);
            glLineWidth(2.0F);
            glColor3f(0.0F, 1.0F, 0.0F);
            glBegin(GL_LINES);
            for (std::size_t corner = 0; corner < quad.size(); ++corner)
            {
                SendSegment(quad[corner], quad[(corner + 1) % quad.size()]);
            }
            glEnd();
            glPopAttrib();
            glEnable(GL_LIGHTING);
        }
    }

    const Open3DView& m_View;
    const MANSceneManager& m_Scene;
    const MANBrepElementManager& m_Elements;
    std::uint32_t m_nFlags;
    std::map<const DSTextureBinding*, GLuint> m_TextureNames;
};
}

void InitStateLiterally()
{
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_DEPTH_TEST);
    glCullFace(GL_BACK);
    glEnable(GL_CULL_FACE);
    glHint(GL_POLYGON_SMOOTH_HINT, GL_NICEST);
    glShadeModel(GL_SMOOTH);
}

void DrawFrameLiterally(const Open3DView& view, const MANSceneManager& scene,
                        const MANBrepElementManager& elements)
{
    LiteralFrame(view, scene, elements).Draw();
}
}
