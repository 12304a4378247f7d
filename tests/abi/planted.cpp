// A library of one class: as it was, with an addition (ADDED), with another layout (CHANGED), and without an operation
// (LOST).
class __attribute__((visibility("default"))) Planted {
public:
    int first() const;
#ifdef ADDED
    int third() const;
#endif
#ifndef LOST
    int second() const;
#endif

#ifdef CHANGED
    int m_before = 0;
#endif
    int m_first = 1;
    int m_second = 2;
};

int Planted::first() const {
    return m_first;
}
#ifndef LOST
int Planted::second() const {
    return m_second;
}
#endif
#ifdef ADDED
int Planted::third() const {
    return m_first + m_second;
}
#endif
