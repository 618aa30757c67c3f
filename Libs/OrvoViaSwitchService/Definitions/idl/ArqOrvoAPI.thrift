// The appliance's management service. Unlike the switch services its
// methods take no header and throw Fault. `i8` is Thrift's `byte`.

namespace cpp ArqOrvoAPI

enum ERROR_CODE {
  NoError = 0,
  InvalidArgument = -1,
  RuntimeError = -2,
  TimeOut = -3,
  NotFound = -4,
  NotImplemented = -5,
  OutOfRange = -6
}

enum CHANGE_MODE {
  Immediate = 0,
  Postpone = 1
}

enum MODULE_VERSION {
  Manager = 0,
  API = 1,
  Package = 2
}

enum TARGET_LOCATION {
  LocalStorage = 0,
  UsbKey = 1
}

enum TASK_ACTION {
  Cancel = 0,
  Remove = 1
}

enum TASK_STATUS {
  Unknown = -1,
  Scheduled = 0,
  InProgress = 1,
  Finished = 2,
  Failed = 3,
  Canceled = 4
}

exception Fault {
  1: ERROR_CODE ErrCode,
  2: string What
}

struct Guid_t {
  1: string Value
}

struct IPAddress_t {
  1: bool bIpv6,
  2: string Address,
  3: string SubNetMask,
  4: string DefaultGateway
}

struct Task_t {
  1: Guid_t TaskId,
  2: string Name,
  3: i64 CreationTime,
  4: i64 CompletedTime,
  5: TASK_STATUS Status,
  6: i8 Progress,
  7: string ErrorMessage
}

service Management {
  string GetVersion(1: MODULE_VERSION mod) throws (1: Fault exp),
  void InstallFirmware(1: string filepath, 2: CHANGE_MODE ChangeMode) throws (1: Fault exp),
  void Reboot() throws (1: Fault exp),
  void SetIpAddress(1: IPAddress_t address, 2: CHANGE_MODE ChangeMode) throws (1: Fault exp),
  IPAddress_t GetIpAddress() throws (1: Fault exp),
  void RestartNetwork() throws (1: Fault exp),
  void SetHostname(1: string hostname, 2: CHANGE_MODE ChangeMode) throws (1: Fault exp),
  string GetHostname() throws (1: Fault exp),
  Task_t ExtractLog(1: TARGET_LOCATION TargetLocation) throws (1: Fault exp),
  list<Guid_t> GetTaskIds() throws (1: Fault exp),
  Task_t GetTask(1: Guid_t TaskId) throws (1: Fault exp),
  Task_t SetTaskAction(1: Guid_t TaskId, 2: TASK_ACTION TaskAction) throws (1: Fault exp)
}
