#include "EdgeQuad.h"

namespace tessarine
{
DSFace& GetFaceAt(const DSHalfEdge* h)
{
    ASSERT(h != nullptr && h->GetLoop() != nullptr && h->GetLoop()->GetFace() != nullptr);
    return *h->GetLoop()->GetFace();
}

EdgeQuad::EdgeQuad(const DSHalfEdge& h1, const DSHalfEdge& h2)
    : a(h1.GetVertex()->GetPosition()),
      b(h2.GetVertex()->GetPosition()),
      c(h1.GetPrev()->GetVertex()->GetPosition()),
      d(h2.GetPrev()->GetVertex()->GetPosition()),
      normal1(GetFaceAt(&h1).CalcNormal()),
      normal2(GetFaceAt(&h2).CalcNormal()),
      newNormal1((d - a).Cross(c - a)),
      newNormal2((c - b).Cross(d - b)),
      beyondAC(h1.GetPrev()->GetTwin()),
      beyondBC(h1.GetNext()->GetTwin()),
      beyondBD(h2.GetPrev()->GetTwin()),
      beyondAD(h2.GetNext()->GetTwin())
{
    ASSERT(beyondAC != nullptr && beyondBC != nullptr && beyondBD != nullptr && beyondAD != nullptr);
}
}
