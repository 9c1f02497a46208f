#pragma once

#include <QtCore/QUrl>
#include <QtQml/qqmlregistration.h>

#include "screens/engine/EngineObject.h"
#include "screens/preview/ClipPlayer.h"

namespace larkspan {

// The clip in the preview. After the preview is closed it is still the last one, which may be fading out.
class PreviewClip : public larkspan::EngineObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool present READ isPresent NOTIFY presentChanged)
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString details READ details NOTIFY changed)  // "12.3s · 3840 × 2160 · 59.94 fps"
    Q_PROPERTY(QUrl thumbnail READ thumbnail NOTIFY changed) // empty if it has none
    Q_PROPERTY(QString primaryBin READ primaryBin NOTIFY changed)
    Q_PROPERTY(QString secondBin READ secondBin NOTIFY changed) // the first extra bin, "" if none

public:
    using EngineObject::EngineObject;

    bool isPresent() const { return m_engine && m_engine->hasPreview(); }
    QString name() const;
    QString details() const;
    QUrl thumbnail() const;
    QString primaryBin() const;
    QString secondBin() const;

    Q_INVOKABLE void reassign(const QString &bin);
    // "" for none.
    Q_INVOKABLE void setSecondBin(const QString &bin);
    Q_INVOKABLE void playWith(larkspan::ClipPlayer *player);

Q_SIGNALS:
    void presentChanged();

private:
    void follow(SortEngine &engine) override;
    void followClip();

    ClipPtr m_clip;
};

// Length, picture and frame rate of a clip as people read them: "12.3s · 3840 × 2160 · 59.94 fps".
QString detailsText(const MediaClip &clip);

} // namespace larkspan
