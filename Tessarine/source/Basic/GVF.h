#pragma once

namespace tessarine
{
/// The gradient vector flow of an edge map (Xu and Prince): its gradient, spread over the whole map as a force
/// for contours that seek an edge. The sample at (x, y) stands at x + y * n.
///
/// Needs   Two samples at least each way (asserted).
/// Says    The number of each iteration, in five columns, fifteen on a line. The message box "Edge map is a
///         constant image." where that is so; the flow then holds no usable numbers.
/// @param n, m        samples across and down
/// @param u, v        the flow, n * m samples each
/// @param mu          weight of the spread against the gradient
/// @param iterations  steps of the spread
void GVF(int n, int m, const double* edgeMap, double* u, double* v, double mu, int iterations);
}
