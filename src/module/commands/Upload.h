#pragma once

namespace rv52 {

struct Session;

// Programs the table on screen and the parameters into the connected module and reads them back.
void mnuUpload_Click(Session& session);

// The part of it behind the identification, into the module that has just been identified.
void UploadToIdentified(Session& session);

}  // namespace rv52
