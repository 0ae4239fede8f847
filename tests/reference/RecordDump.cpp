#include "RecordDump.h"
#include "MANBrepElementManager.h"
#include <sstream>

namespace tessarine
{
namespace
{
class RecordWriter
{
public:
    template <class T>
    void WriteArray(const char* name, const RecordArray<T>& array)
    {
        for (std::size_t i = 0; i < array.size(); ++i)
        {
            m_Text << name << ' ' << i;
            if (array[i] != nullptr)
            {
                m_Text << (array[i]->IsSelected() ? " selected" : "");
                Write(*array[i]);
            }
            m_Text << '\n';
        }
    }

    std::string GetText() const { return m_Text.str(); }

private:
    void Write(const DSSolid& solid)
    {
        m_Text << (solid.IsVisible() ? " visible" : " hidden");
        WriteList("vertices", solid.GetVertexList());
        WriteList("faces", solid.GetFaceList());
        WriteList("edges", solid.GetEdgeList());
    }

    void Write(const DSFace& face)
    {
        WriteList("loops", face.GetLoopList());
        WriteVector("normal", face.GetNormal());
        WriteLink("solid", face.GetSolid());
        m_Text << (face.GetMaterial() != nullptr ? " material" : "") << " tag " << face.GetTag();
    }

    void Write(const DSEdge& edge)
    {
        WriteLink("h1", edge.GetHalfEdge1());
        WriteLink("h2", edge.GetHalfEdge2());
        m_Text << (edge.IsBoundary() ? " boundary" : "") << (edge.IsRepeated() ? " repeated" : "");
    }

    void Write(const DSHalfEdge& halfEdge)
    {
        WriteLink("prev", halfEdge.GetPrev());
        WriteLink("next", halfEdge.GetNext());
        WriteLink("vertex", halfEdge.GetVertex());
        WriteLink("edge", halfEdge.GetEdge());
        WriteLink("loop", halfEdge.GetLoop());
        m_Text << " texture " << std::hexfloat << halfEdge.GetTexCoord().x << ' ' << halfEdge.GetTexCoord().y;
    }

    void Write(const DSLoop& loop)
    {
        WriteLink("h", loop.GetHalfEdge());
        WriteLink("face", loop.GetFace());
    }

    void Write(const DSVertex& vertex)
    {
        WriteVector("position", vertex.GetPosition());
        WriteVector("normal", vertex.GetNormal());
        WriteLink("h", vertex.GetHalfEdge());
    }

    template <class TList>
    void WriteList(const char* name, const TList& list)
    {
        m_Text << ' ' << name;
        for (const auto* pElement : list)
        {
            WriteLink("", pElement);
        }
    }

    void WriteVector(const char* name, const smVec3d& v)
    {
        m_Text << ' ' << name << ' ' << std::hexfloat << v.x << ' ' << v.y << ' ' << v.z;
    }

    void WriteLink(const char* name, const DSElement* element)
    {
        m_Text << ' ' << name << ' ';
        element != nullptr ? m_Text << std::hex << element->GetID() << std::dec : m_Text << "null";
    }

    std::ostringstream m_Text;
};
}

std::string DumpRecords(const MANBrepElementManager& manager)
{
    RecordWriter writer;
    writer.WriteArray("solid", manager.GetSolidArray());
    writer.WriteArray("face", manager.GetFaceArray());
    writer.WriteArray("edge", manager.GetEdgeArray());
    writer.WriteArray("halfedge", manager.GetHalfEdgeArray());
    writer.WriteArray("loop", manager.GetLoopArray());
    writer.WriteArray("vertex", manager.GetVertexArray());
    return writer.GetText();
}
}
