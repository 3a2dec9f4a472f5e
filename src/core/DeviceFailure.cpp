#include "DeviceFailure.h"

#include <QFileDevice>

WriteResult failureOfDevice(const QFileDevice &device)
{
    using std::errc;
    for (const errc known :
         {errc::no_space_on_device, errc::file_too_large, errc::read_only_file_system,
          errc::permission_denied, errc::operation_not_permitted}) {
        const WriteResult result = WriteResult::of(std::make_error_code(known));
        if (result.detail() == device.errorString())
            return result;
    }
    return WriteResult(WriteResult::Failure::Other, device.errorString());
}
