#pragma once

#include <QByteArray>
#include <QIODevice>

// Takes writes until its room is used up, then fails as a full disk does. Room is counted in
// bytes, to fail in the middle of a text, or in calls, to fail at each write of a writer in turn.
class FillingDevice : public QIODevice {
public:
    enum class Room { Bytes, Writes };

    explicit FillingDevice(qint64 room, Room unit = Room::Bytes)
        : m_room(room)
        , m_unit(unit) {
        open(QIODevice::WriteOnly);
    }

    QByteArray written;

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override {
        const qint64 cost = m_unit == Room::Bytes ? size : 1;
        if (cost > m_room) {
            setErrorString(QStringLiteral("No space left on device"));
            return -1;
        }
        m_room -= cost;
        written.append(data, size);
        return size;
    }

private:
    qint64 m_room;
    Room m_unit;
};
