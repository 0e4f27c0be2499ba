#include "worker/update_thread.h"

void UpdateThread::run()
{
    emit log(tr("Update firmware successful."));
    emit set_progress(1, 1);
    emit error(1);
}
