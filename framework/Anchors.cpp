// Destructors of the interfaces: one place for their type information, shared by host and add-in.
#include "framework/IAddIn.h"
#include "framework/INotesParent.h"

namespace yrw {

IRecord::~IRecord() = default;
ICollection::~ICollection() = default;
IUser::~IUser() = default;
ISession::~ISession() = default;
IObjectDefinition::~IObjectDefinition() = default;
IApplication::~IApplication() = default;
IHostApplication::~IHostApplication() = default;
IGridController::~IGridController() = default;
IHostInterface::~IHostInterface() = default;
IHostComponent::~IHostComponent() = default;
IAddIn::~IAddIn() = default;
INotesParent::~INotesParent() = default;

} // namespace yrw
