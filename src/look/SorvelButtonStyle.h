// SorvelButtonStyle: the kinds and sizes of SorvelButton, as enums QML reads.
// Never instantiated, so it belongs to no thread.
#pragma once

#include <QObject>
#include <QQmlEngine>

// The kinds and sizes of SorvelButton.
class SorvelButtonStyle : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("SorvelButtonStyle only holds the kinds and sizes of SorvelButton")

public:
    enum Kind { Primary, Secondary, Ghost, Danger };
    Q_ENUM(Kind)
    enum Size { Small, Regular, Large };
    Q_ENUM(Size)
};
