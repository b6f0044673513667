// What may never be removed as an item: system folders, the home folder and its
// main folders, key stores, mount points. Functions over a fixed SafetyProfile;
// any thread.

#pragma once

#include "SafetyProfile.h"

#include <QString>

class RealPlace;

// The lists are fixed when the profile is built; nothing the user sets widens
// or narrows them.
//
// isProtected and reason first pass the path through the profile's normalize
// (so "~", ".", "..", doubled and trailing slashes are resolved textually), then
// judge the text alone: nothing touches the disk and no link is resolved. They
// are pure and safe on any thread. lastWord, for the moment before a file
// operation, also judges where the path really leads.
//
// Some asymmetries are deliberate:
//  * The literal prefixes ("/usr/bin/", "/private/etc/", ...) end in "/", so
//    they protect what lies beneath a folder but not the folder itself:
//    `/usr/bin` is not protected while `/usr/bin/ls` is. Folders that matter
//    themselves ("/usr", "/etc", "/System") are in the exact list.
//  * The home prefixes ("~/.ssh") protect the entry and what is below it, with
//    a "/" added: `~/.sshfoo` is not protected. `reason` uses plain prefixes, so
//    the sentence it gives for `~/.sshfoo` is still the SSH one.
//  * A mount point ("/Volumes/NAME", on Linux also "/media/USER/NAME",
//    "/run/media/USER/NAME", "/mnt/NAME") is protected by its shape; what lies
//    inside a volume is not, and the system prefixes (such as "/run/") never
//    reach into one.
namespace SafetyGuard {

// True when the path may never be removed as an item.
bool isProtected(QByteArrayView path, const SafetyProfile &profile = SafetyProfile::standard());

// The localised sentence that says why a path is kept. Meant for a path already
// known to be protected; it does not itself test isProtected.
QString reason(QByteArrayView path, const SafetyProfile &profile = SafetyProfile::standard());

// The folders that must stay but whose contents may go ("~/Library/Caches",
// "~/Library/Logs"; on Linux also "~/.cache"), in comparable form.
inline const QSet<QByteArray> &contentsOnly(const SafetyProfile &profile = SafetyProfile::standard())
{
    return profile.contentsOnly();
}
// True when the normalised path is one of contentsOnly().
bool isContentsOnly(QByteArrayView path, const SafetyProfile &profile = SafetyProfile::standard());

// The guard's last word before a file operation. The text is judged as by
// isProtected; then the real place, where the path leads on disk now (its
// folder resolved through every link, the final name never followed; see
// RealPlace). Either form protected refuses the item, with the sentence of the
// form that matched. A place that cannot be resolved is judged by its text.
struct Verdict {
    enum class Form { none, text, realPlace };
    Form refusedBy = Form::none;
    QString reason;       // the guard's sentence when refused
    QByteArray realPlace; // the resolved path, empty when it could not be resolved
    bool refused() const { return refusedBy != Form::none; }
};
Verdict lastWord(QByteArrayView path, const RealPlace &place, const SafetyProfile &profile = SafetyProfile::standard());
// The same, resolving the path itself; touches the disk.
Verdict lastWord(QByteArrayView path, const SafetyProfile &profile = SafetyProfile::standard());

namespace detail {
// The comparable form of a normalised path: the path itself when it is ASCII.
QByteArray comparableKey(const QByteArray &normalizedPath);
// The same tests on a path that is already normalised and in comparable form.
bool isProtectedKey(const QByteArray &key, const SafetyProfile &profile);
QString reasonKey(const QByteArray &key, const SafetyProfile &profile);
} // namespace detail

} // namespace SafetyGuard
