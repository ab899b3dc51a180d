#pragma once
// tmrKeyEvn, the frame's door to service mode: once a second it looks whether Shift, Ctrl, Alt
// and the up arrow are all held at that moment, and if so shows the password dialog modally with
// the frame as its owner. Nothing else opens that dialog.

#include <QObject>

#include <functional>

class QTimer;
class QWidget;

namespace torvane::app {

inline constexpr int KeyEventInterval = 1000; // ms

// The keys that open the door, held together.
bool OpensServiceDoor(Qt::KeyboardModifiers modifiers, bool upHeld);

class ServiceDoor : public QObject {
    Q_OBJECT
public:
    // The timer is the frame's, named tmrKeyEvn; the door watches the keys of the whole program.
    explicit ServiceDoor(QWidget* frame);
    ~ServiceDoor() override;
    ServiceDoor(const ServiceDoor&) = delete;
    ServiceDoor& operator=(const ServiceDoor&) = delete;

    // What tmrKeyEvn does when it fires.
    void Check();
    // Service mode's window, shown modally once the password was right; without it the right
    // password only closes the box.
    void SetServiceMode(std::function<void(QWidget* owner)> serviceMode) {
        serviceMode_ = std::move(serviceMode);
    }

protected:
    // Follows the up arrow: the platform is asked for the modifiers, but no platform tells
    // whether an ordinary key is down.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* frame_;
    QTimer* timer_;
    bool upHeld_ = false;
    std::function<void(QWidget* owner)> serviceMode_;
};

} // namespace torvane::app
