// What the title bars under Wayland use of the inner interface of Qt's client library, which Debian 12 ships no header
// for.
//
// Names, arguments and the order of the virtual functions are those of Qt 6.4.2; cmake/desktop_modules.cmake builds the
// module for no other version. Left out is what we do not call: only virtual functions have to be complete.
#pragma once

#include <QCursor>
#include <QEventPoint>
#include <QMargins>
#include <QObject>

class QPaintDevice;
class QWindow;

namespace QtWaylandClient {

class QWaylandInputDevice;

class QWaylandWindow {
public:
    void setMouseCursor(QWaylandInputDevice* device, const QCursor& cursor);
    void restoreMouseCursor(QWaylandInputDevice* device);
};

class Q_DECL_IMPORT QWaylandAbstractDecoration : public QObject {
public:
    enum MarginsType { Full, ShadowsExcluded, ShadowsOnly };

    static const QMetaObject staticMetaObject;
    const QMetaObject* metaObject() const override;
    void* qt_metacast(const char* name) override;
    int qt_metacall(QMetaObject::Call call, int index, void** arguments) override;
    QWaylandAbstractDecoration();
    ~QWaylandAbstractDecoration() override;

    QWaylandWindow* waylandWindow() const;
    QWindow* window() const;
    void update();
    virtual QMargins margins(MarginsType type = Full) const = 0;
    virtual bool handleMouse(QWaylandInputDevice* device, const QPointF& local, const QPointF& global,
                             Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers) = 0;
    virtual bool handleTouch(QWaylandInputDevice* device, const QPointF& local, const QPointF& global,
                             QEventPoint::State state, Qt::KeyboardModifiers modifiers) = 0;

protected:
    virtual void paint(QPaintDevice* device) = 0;
    void setMouseButtons(Qt::MouseButtons buttons);
    void startResize(QWaylandInputDevice* device, Qt::Edges edges, Qt::MouseButtons buttons);
    void startMove(QWaylandInputDevice* device, Qt::MouseButtons buttons);
    void showWindowMenu(QWaylandInputDevice* device);
    bool isLeftClicked(Qt::MouseButtons buttons);
    bool isRightClicked(Qt::MouseButtons buttons);
    bool isLeftReleased(Qt::MouseButtons buttons);
};

class Q_DECL_IMPORT QWaylandDecorationPlugin : public QObject {
public:
    static const QMetaObject staticMetaObject;
    const QMetaObject* metaObject() const override;
    void* qt_metacast(const char* name) override;
    int qt_metacall(QMetaObject::Call call, int index, void** arguments) override;
    explicit QWaylandDecorationPlugin(QObject* parent = nullptr);
    ~QWaylandDecorationPlugin() override;

    virtual QWaylandAbstractDecoration* create(const QString& key, const QStringList& parameters) = 0;
};

}  // namespace QtWaylandClient
