#include "FieldPeers.h"
#include "DistanceField.h"
#include <vtkImageData.h>
#include <vtkMarchingCubes.h>
#include <vtkNew.h>
#include <vtkPolyData.h>

namespace tessarine::bench
{
struct PeerSurface::Pipeline
{
    vtkNew<vtkImageData> samples;
    vtkNew<vtkMarchingCubes> surface;
};

PeerSurface::PeerSurface(const std::vector<float>& values) : m_pPipeline(std::make_unique<Pipeline>())
{
    vtkImageData& samples = *m_pPipeline->samples;
    samples.SetDimensions(DistanceField::kCountX, DistanceField::kCountY, DistanceField::kCountZ);
    samples.SetOrigin(DistanceField::kLowX, DistanceField::kLowY, DistanceField::kLowZ);
    samples.SetSpacing(DistanceField::kStep, DistanceField::kStep, DistanceField::kStep);
    samples.AllocateScalars(VTK_FLOAT, 1);
    for (int i = 0; i < DistanceField::kCountX; ++i)
    {
        for (int j = 0; j < DistanceField::kCountY; ++j)
        {
            for (int k = 0; k < DistanceField::kCountZ; ++k)
            {
                *static_cast<float*>(samples.GetScalarPointer(i, j, k)) =
                    values[DistanceField::ToIndex(i, j, k)];
            }
        }
    }
    vtkMarchingCubes& surface = *m_pPipeline->surface;
    surface.SetInputData(&samples);
    surface.ComputeNormalsOff();
    surface.ComputeGradientsOff();
    surface.ComputeScalarsOff();
    surface.SetValue(0, 0.0);
}

PeerSurface::~PeerSurface() = default;

std::size_t PeerSurface::Run()
{
    m_pPipeline->surface->Modified();
    m_pPipeline->surface->Update();
    return static_cast<std::size_t>(m_pPipeline->surface->GetOutput()->GetNumberOfPolys());
}
}
