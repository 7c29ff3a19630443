#include "FakeDeviceListSdk.h"

#include <cstring>
#include <memory>

namespace FakeDeviceListSdk {
namespace {

struct List {
    QVector<QPair<vrn_Device_Shield_Type_t, QByteArray>> boards;
    int failingEntry;
};

vrn_Error_t listGet(vrn_Device_List_Handle* handle)
{
    Script& s = script();
    bool gated = false;
    {
        QMutexLocker lock(&s.mutex);
        ++s.listCalls;
        gated = s.gated;
    }
    s.entered.release();
    if (gated)
        s.gate.acquire();
    QMutexLocker lock(&s.mutex);
    if (s.failList)
        return "list unavailable";
    auto* list = new List { {}, s.failingEntry };
    for (const auto& board : qAsConst(s.boards))
        list->boards.append({ board.first, board.second.toUtf8() });
    *handle = reinterpret_cast<vrn_Device_List_Handle>(list);
    return nullptr;
}

vrn_Error_t listSize(vrn_Device_List_Handle handle, uint32_t* count)
{
    *count = uint32_t(reinterpret_cast<List*>(handle)->boards.size());
    return nullptr;
}

vrn_Error_t listEntry(vrn_Device_List_Handle handle, uint32_t index, vrn_Device_List_Entry_t* entry)
{
    auto* list = reinterpret_cast<List*>(handle);
    if (int(index) == list->failingEntry)
        return "entry unreadable";
    entry->shield_type = list->boards.at(int(index)).first;
    std::strncpy(entry->uuid, list->boards.at(int(index)).second.constData(), VRN_UUID_MAX - 1);
    return nullptr;
}

vrn_Error_t listDestroy(vrn_Device_List_Handle handle)
{
    delete reinterpret_cast<List*>(handle);
    return nullptr;
}

} // namespace

Script& script()
{
    static Script instance;
    return instance;
}

const Vrn* table()
{
    static const Vrn sdk = [] {
        Vrn t {};
        t.api_version = VRN_API_VERSION;
        t.struct_size = sizeof(Vrn);
        t.device_list_get = listGet;
        t.device_list_size = listSize;
        t.device_list_entry = listEntry;
        t.device_list_destroy = listDestroy;
        return t;
    }();
    return &sdk;
}

} // namespace FakeDeviceListSdk
