#pragma once
#include "Workspace.h"
#include <QString>

namespace tessarine
{
/// Makes the user's own folder to work in the current one: Tessarine, among the documents. Where it is not there yet, it
/// is made with the samples, whole or not at all.
///
/// Throws FileError or a std::filesystem error; the current folder is as before then.
void EnterUserWorkspace();

/// The same with the folder in which it stands.
void EnterUserWorkspace(const QString& documents, const WorkspaceSize& size = {});
}
