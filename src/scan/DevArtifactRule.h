// Recognises folders that are build output or dependency caches of software
// projects: by the folder's name, and for names too ordinary to stand alone
// ("target", "build", "Pods", "venv") by a project file beside or inside it.
// No instances; any thread.

#pragma once

#include <QByteArrayView>
#include <QString>

namespace DevArtifactRule {

// The localised kind label of the folder `name` inside the open folder `parentFd`
// (a descriptor, so that paths of any length work; project files are looked up
// relative to it), or a null string. Names compare whole and case-sensitively; the first row of the
// table whose name matches decides, so a failed project-file test gives nothing.
// A name outside the table costs a few comparisons and no system call.
QString match(QByteArrayView name, int parentFd);

} // namespace DevArtifactRule
