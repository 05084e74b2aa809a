#include "envcheck/vyrenvcheckthread.h"

namespace OfficeAssiant {

VyrEnvCheckThread::VyrEnvCheckThread(QObject *parent) : QThread(parent) {}

VyrEnvCheckThread::~VyrEnvCheckThread()
{
    requestStop();
    wait();
}

void VyrEnvCheckThread::requestStop()
{
    if (m_isRunning)
        m_stopRequested = true;
}

} // namespace OfficeAssiant
