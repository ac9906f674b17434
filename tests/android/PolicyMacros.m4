define(`init_daemon_domain', `
allow init $1_exec:file { getattr open read execute map };
allow init $1:process { transition siginh rlimitinh noatsecure };
allow $1 $1_exec:file { entrypoint open read execute getattr map };
type_transition init $1_exec:process $1;')
define(`binder_use', `
allow $1 servicemanager:binder { call transfer };
allow servicemanager $1:binder { call transfer };')
define(`binder_call', `
allow $1 $2:binder { call transfer };
allow $2 $1:binder transfer;
allow $1 $2:fd use;')
define(`add_service', `
allow $1 $2:service_manager { add find };
neverallow { domain -$1 } $2:service_manager add;
userdebug_or_eng(`
  allow $1 su:tcp_socket { accept getopt read write };
')')
define(`get_prop', `
allow $1 $2:file { getattr open read map };')
define(`set_prop', `
allow $1 property_socket:sock_file write;
allow $1 init:unix_stream_socket connectto;
allow $1 $2:property_service set;
get_prop($1, $2)')
define(`vendor_internal_prop', `
type $1, property_type;
neverallow { coredomain -init -dumpstate } $1:file { open read write };
neverallow { coredomain -init } $1:property_service set;')
define(`userdebug_or_eng', ifelse(BUILD_VARIANT, `user', `', `$1'))
