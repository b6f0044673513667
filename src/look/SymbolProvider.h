// SymbolProvider: serves image://symbol/<rrggbbaa>/<name> to QML. Owns
// nothing; Qt Quick asks it on the GUI thread or, for asynchronous images, on
// its image-loading thread.
#pragma once

#include <QImage>
#include <QQuickImageProvider>
#include <QSize>
#include <QString>

// Draws Symbols::render's image for the colour and name in the id.
class SymbolProvider : public QQuickImageProvider
{
public:
    SymbolProvider();
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};
