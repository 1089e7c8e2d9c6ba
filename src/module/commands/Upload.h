#pragma once

namespace rv52 {

struct Session;

// Programs the table on screen and the parameters into the connected module and reads them back.
void mnuUpload_Click(Session& session);

}  // namespace rv52
