#include "views/ListModule.h"

ModuleList CallGetList(Call& call, const ListModuleArg& module) {
  ModuleList lists;
  // A copy: the script may assign another object to the caller's value.
  const ROCParam held(module.Object());
  RIOObject* object = held.Object();
  ZylDispatch* dispatch = object == nullptr ? nullptr : object->GetDispatch(true);
  ROCParams noArguments;
  ROCParam* result = nullptr;
  const int status = ZylCallVirtualMethodIfExists(dispatch, "GetList", &noArguments, &result);
  if (status == ZylDispatch::kNoSuchMethod) return lists;
  if (status != 0) {
    call.status = ZylHandleException(status, call.result);
  } else if (held.Object() != nullptr) {
    lists.root = static_cast<ROCAlgo*>(held.Object())->GraphicRoot();
    lists.list = result == nullptr ? nullptr : dynamic_cast<List*>(result->Object());
    if (lists.list != nullptr) lists.view = lists.list->GetListView(lists.root);
  }
  deleteROCParam(result);
  return lists;
}
