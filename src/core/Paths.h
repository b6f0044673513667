// The path type of the whole engine: exact bytes, their text forms, comparison
// under canonical equivalence and the lexical helpers (normalize, "~"). Pure
// functions; any thread.

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

// A path is the exact sequence of bytes the operating system gave us, held in a
// QByteArray. Nothing in the engine decodes it to text: a name with invalid UTF-8,
// a newline or 255 bytes travels from the scanner through the selection to the
// removal unchanged. Text is made only at the edge:
//
//  * toText() is lossless. Valid UTF-8 decodes as usual; every byte that is not
//    part of a valid sequence becomes the lone low surrogate U+DC80 + byte (the
//    "surrogateescape" scheme). fromText() reverses it exactly, so a path can go
//    into QML, JSON or the preferences as a QString and come back as the same bytes.
//  * toDisplay() is for people, and one name can never disguise itself or the
//    text around it. It is never turned back into a path. Each piece between
//    slashes is shown on its own terms:
//      - a byte that is not part of valid UTF-8 reads "\xFF" (its value in hex);
//      - a control character reads "\n", "\t", "\r", or "\x1B" for the other C0
//        controls and DEL (they are one byte each, so \x always names a byte);
//      - a C1 control, a bidirectional control (LRE, RLE, PDF, LRO, RLO, LRI, RLI,
//        FSI, PDI, LRM, RLM, ALM) and the line and paragraph separators read
//        "\u202E" (the code point), so no override stays active or unbalanced;
//      - a backslash reads "\\", so each of these forms reads one way only;
//      - a piece holding a right-to-left letter is wrapped in FIRST STRONG
//        ISOLATE ... POP DIRECTIONAL ISOLATE (U+2068 ... U+2069), so it orders
//        itself and never the text, or the other pieces, around it.
//
// Comparisons follow canonical Unicode equivalence where the bytes are valid UTF-8
// ("e" + combining acute equals "é"); anything else compares byte for byte. Pure
// ASCII skips normalisation entirely.
namespace Paths {

QString toText(QByteArrayView path);
QByteArray fromText(const QString &text);
QString toDisplay(QByteArrayView path);

// The form under which paths are compared and hashed: NFC for valid non-ASCII
// UTF-8, the bytes themselves otherwise. Two paths are equal exactly when their
// comparable forms are equal byte for byte.
QByteArray comparable(QByteArrayView path);

bool equal(QByteArrayView a, QByteArrayView b);
// Textual prefix test under canonical equivalence.
bool startsWith(QByteArrayView path, QByteArrayView prefix);
// True when `path` is `dir` itself or lies below it. A "/" is added to `dir`
// unless it ends in one, so "/a/bc" is not within "/a/b".
bool isWithin(QByteArrayView path, QByteArrayView dir);
// True when `path` lies strictly below `dir`.
bool isBelow(QByteArrayView path, QByteArrayView dir);

// Last component; "/" for the root, the whole text when it has no slash.
QByteArray lastComponent(QByteArrayView path);
// The folder holding `path`: "/" for a child of the root, empty for "/" itself.
QByteArray parentOf(QByteArrayView path);
// `dir` + "/" + `name`, with no doubled slash when `dir` is "/".
QByteArray join(QByteArrayView dir, QByteArrayView name);
// The extension of a name as a view into it: what follows the last dot, empty when
// there is no dot or only a leading one ("file" and ".profile" have none).
QByteArrayView extension(QByteArrayView name);

bool isAscii(QByteArrayView bytes);

// Calls `visit` with each piece of `path` between slashes, in order, as a view
// into it; empty pieces and "." are left out, ".." is passed on.
template <typename Visit>
void forEachPiece(QByteArrayView path, Visit &&visit)
{
    qsizetype start = 0;
    while (start <= path.size()) {
        qsizetype end = path.indexOf('/', start);
        if (end < 0)
            end = path.size();
        const QByteArrayView piece = path.sliced(start, end - start);
        if (!piece.isEmpty() && piece != ".")
            visit(piece);
        start = end + 1;
    }
}

// The canonical form of a path: "~" expanded, "." and ".." and empty pieces
// resolved textually, no trailing slash; a relative path hangs from "/". Touches
// no file system, resolves no link.
QByteArray normalize(QByteArrayView path);

// A leading "~" or "~name" expanded the way a shell does: to the home folder, or
// to the named user's. Anything else, or an unknown user, stays as it is.
QByteArray expandTilde(QByteArrayView path);

// The path as people see it, with the home folder (or `home`) written as "~".
// A home of "/" shortens nothing.
QString abbreviateHome(QByteArrayView path);
QString abbreviateHome(QByteArrayView path, QByteArrayView home);

} // namespace Paths
