#include "views/ListModule.h"

ModuleList AskForList(Call& call, const ListModuleArg& module) {
  ModuleList answer;
  RIOObject* asked = module.Object();
  ZylDispatch* dispatch = asked == nullptr ? nullptr : asked->GetDispatch(true);
  ROCParams noArguments;
  ROCParam* result = nullptr;
  const int status = ZylCallVirtualMethodIfExists(dispatch, "GetList", &noArguments, &result);
  if (status == ZylDispatch::kNoSuchMethod) return answer;
  if (status != 0) {
    call.status = ZylHandleException(status, call.result);
  } else if (module.Object() != nullptr) {
    answer.root = static_cast<ROCAlgo*>(module.Object())->GraphicRoot();
    answer.list = result == nullptr ? nullptr : dynamic_cast<List*>(result->Object());
    if (answer.list != nullptr) answer.view = answer.list->GetListView(answer.root);
  }
  deleteROCParam(result);
  return answer;
}
