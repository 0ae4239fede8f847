#pragma once

namespace tessarine
{
struct EigenData;

/// The eigen-analysis of one step of Loop subdivision, all new points from the old ones (weights of IASubLOOPCommand:
/// 3/16 up to valence 3, then 3/(8n) and 5/8), on the patch around a triangle with one vertex of any valence.
///
/// Needs   A valence of 3 or more (asserted).
/// Kept    The step at valence 3 has the eigenvalue 1/16 three times with two eigenvectors. One of the three is moved by
///         2^-26, which leaves errors of that size.
/// Source  J. Stam, "Evaluation of Loop Subdivision Surfaces", 1998.
EigenData AnalyseLoopStep(int nValence);
}
