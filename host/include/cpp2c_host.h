/* SPDX-License-Identifier: MIT */
/**
 * @file cpp2c_host.h
 * The constants of the host context, for the arguments that include_c passes to the context unchanged.
 *
 * The host context also defines the following results and meanings:
 *
 * - c_context_init(): pass `argc` and `argv` of main(), each cast to uintptr_t, or 0 and 0 for all
 *   defaults. Every argument before "--" is an option of the host context. On failure, it prints one line
 *   to standard error. On success, the services of the context exist; a second call is refused with
 *   C_RESULT_REDUNDANT.
 * - c_context_load(): opens the modules and takes all participants through load, start, configure and
 *   run. It returns C_RESULT_NOT_FOUND if a module cannot be opened, and the step's own negative code if
 *   a step fails.
 * - c_context_set_timer(): both times are in milliseconds. With a first time of 0 the timer expires at
 *   once; a negative first time disarms it. With a period of 0 the timer expires once; a negative period
 *   is refused with C_RESULT_PARAM.
 * - c_loop_run(): ends on SIGINT, on SIGTERM, or when the control socket or a script stops it. It then
 *   returns 0, after all participants have been unconfigured, stopped and unloaded. An exception that
 *   leaves a callback ends it in the same way, but it then returns C_RESULT_SYSTEM_CALL. Before and after
 *   c_loop_run(), both signals keep the disposition that the program gave them.
 * - fork(): both signals end the new process. It must not use the context, whose control socket and state
 *   file belong to the service. It may call c_context_deinit(), which then releases nothing, and
 *   c_loop_del_fd(): neither affects the service.
 * - c_context_deinit(): inside a callback, it prints one line to standard error and calls abort().
 * - c_system_call2() and c_popen_call(): run the command with `/bin/sh -c` and return its exit status,
 *   128 + N if signal N ended it, or C_RESULT_SYSTEM_CALL if it could not be run. They do not wait for
 *   processes that the command leaves in the background. c_popen_call() also writes each line of the
 *   command's standard output to the log, as a record of the module "command"; a line longer than 4096
 *   bytes continues in further records.
 * - c_heartbeat_lock() and c_heartbeat_unlock(): return 0. Locks nest to any depth; an unlock without a
 *   lock is refused with C_RESULT_PARAM. The time while locked does not count as time in which a callback
 *   holds the loop.
 * - c_cfm_get_attr() and c_cfm_set_attr(): the node is the number of an object; the attribute is one
 *   32-bit word that the context stores for this object. They return C_RESULT_NOT_FOUND if the object
 *   does not exist.
 * - c_cfm_set_value(): returns C_RESULT_SYSTEM_CALL if the value was stored, but an observer threw an
 *   exception or was not called because 64 callbacks were running inside one another.
 * - c_cfm_save_config(): returns 0 once all changes since the last save are on the disk, in the file of
 *   the option "--state". It returns C_RESULT_SYSTEM_CALL if the file cannot be written: the log says
 *   why, and the next save writes the changes again. Without the option it returns 0 and saves nothing.
 * - The source of an event is the name of the program that sent it.
 */
#ifndef CPP2C_HOST_H
#define CPP2C_HOST_H

/**
 * Bits of the mask `events` of c_loop_add_fd(). The callback receives only #C_LOOP_READ and #C_LOOP_WRITE.
 *
 * A mask with neither #C_LOOP_READ nor #C_LOOP_WRITE, or with both #C_LOOP_PERSIST and #C_LOOP_ONCE, is
 * refused with C_RESULT_PARAM. A descriptor that cannot be waited for, such as a regular file, is refused
 * with C_RESULT_SYSTEM_CALL.
 */
typedef enum c_loop_event {
  C_LOOP_READ = 0x02,    /**< data to read, end of file, or an error */
  C_LOOP_WRITE = 0x04,   /**< ready for writing, or an error */
  C_LOOP_PERSIST = 0x10, /**< keep watching; the default without #C_LOOP_ONCE */
  C_LOOP_EDGE = 0x20,    /**< edge-triggered: call when the descriptor becomes ready, not while it is ready */
  C_LOOP_ONCE = 0x100    /**< stop watching just before the first call */
} c_loop_event;

/** The `operation` of a #c_cfm_callback. Its `leaf` is "" except for #C_CFM_CHANGED. */
typedef enum c_cfm_operation {
  C_CFM_ADDED = 1,   /**< the instance was added; every leaf has its default */
  C_CFM_CHANGED = 2, /**< the value of the leaf has changed */
  C_CFM_DELETED = 3  /**< the instance was deleted */
} c_cfm_operation;

/**
 * Values of the `option` of c_cfm_set_value(), in addition to 0. They are for objects that the configuration
 * declares "dynamic": instances of these can be added and deleted at run time.
 *
 * Reading a leaf of an instance that does not exist returns the leaf's default. Writing it without
 * #C_CFM_CREATE is refused with C_RESULT_NOT_FOUND.
 */
typedef enum c_cfm_option {
  C_CFM_CREATE = 1, /**< create the leaf's instance if it does not exist, then write the leaf */
  C_CFM_DELETE = 2  /**< delete the leaf's instance with all its leaves; the value is ignored */
} c_cfm_option;

/**
 * The `code` of c_log_record(), as in syslog. A smaller number counts as #C_LOG_CRITICAL, a larger one as
 * #C_LOG_DEBUG.
 */
typedef enum c_log_level {
  C_LOG_CRITICAL = 2,
  C_LOG_ERROR = 3,
  C_LOG_WARNING = 4,
  C_LOG_NOTICE = 5,
  C_LOG_INFO = 6, /**< the least urgent level that is logged by default */
  C_LOG_DEBUG = 7
} c_log_level;

#endif
