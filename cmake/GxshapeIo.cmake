# The companion library gxshape_io: readers and writers of files. It stands beside the core and uses
# only what the core's headers promise.

gxshape_library(gxshape_io FOLDERS io ROOT . DEPENDS gxshape)
set_target_properties(gxshape_gxshape_io PROPERTIES EXPORT_NAME gxshape_io)
