#include "views/ListModule.h"

ModuleList AskForList(Call& call, const ListModuleArg& module) {
  ModuleList answer;
  // A copy: the caller's own value can hold something else by the time that the script returns.
  const ROCParam asked(module.Object());
  RIOObject* object = asked.Object();
  ZylDispatch* dispatch = object == nullptr ? nullptr : object->GetDispatch(true);
  ROCParams noArguments;
  ROCParam* result = nullptr;
  const int status = ZylCallVirtualMethodIfExists(dispatch, "GetList", &noArguments, &result);
  if (status == ZylDispatch::kNoSuchMethod) return answer;
  if (status != 0) {
    call.status = ZylHandleException(status, call.result);
  } else if (asked.Object() != nullptr) {
    answer.root = static_cast<ROCAlgo*>(asked.Object())->GraphicRoot();
    answer.list = result == nullptr ? nullptr : dynamic_cast<List*>(result->Object());
    if (answer.list != nullptr) answer.view = answer.list->GetListView(answer.root);
  }
  deleteROCParam(result);
  return answer;
}
