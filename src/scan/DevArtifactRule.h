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

// The same rule over a tree that is not on this disk: `exists(file, inside)`
// says whether `file` lies beside the folder (or, with `inside`, in it).
using Lookup = bool (*)(const void *context, const char *file, bool inside);
QString match(QByteArrayView name, Lookup exists, const void *context);

// Whether `name` is one of the project files the rule looks for.
bool isProjectFile(QByteArrayView name);

} // namespace DevArtifactRule
