/* SPDX-License-Identifier: MIT */
/**
 * @file cpp2c_host.h
 * What the host context gives a meaning to: the words that include_c passes on unchanged.
 *
 * Beside the constants below, the host context defines:
 *
 * - c_context_init(): `argc` and `argv` of main(), each cast to uintptr_t, or 0 and 0 for all defaults. Every
 *   argument up to "--" is an option of the host context. A failure is told in one line on standard error.
 *   Services exist once it has succeeded. Once only: a second call is refused with C_RESULT_REDUNDANT.
 * - c_context_load(): opens the modules and takes everybody through load, start, configure and run. A module
 *   that cannot be opened gives C_RESULT_NOT_FOUND, a step that fails its own negative code.
 * - c_context_set_timer(): both times in milliseconds. A first time of 0 expires at once, a negative one
 *   disarms the timer; a period of 0 expires once. A negative period is refused with C_RESULT_PARAM.
 * - c_loop_run(): returns 0 after SIGINT, SIGTERM or a stop by the control socket or a script, once every
 *   participant has been unconfigured, stopped and unloaded. Before and after, the signals do what they did.
 *   A process that the service forks is ended by either, and may do no more with the context.
 * - c_system_call2() and c_popen_call(): the exit status of `/bin/sh -c` with the command, 128 + N if signal
 *   N ended it, C_RESULT_SYSTEM_CALL if it could not be run. c_popen_call() also writes each line of its
 *   standard output to the log, as module "command".
 * - c_heartbeat_lock() and c_heartbeat_unlock(): 0, nested as often as you like; an unlock without a lock is
 *   refused with C_RESULT_PARAM. The time in between does not count as time in which a callback holds the
 *   loop.
 * - c_cfm_get_attr(), c_cfm_set_attr(): the node is the number of an object, the attribute one 32-bit word
 *   kept for it. C_RESULT_NOT_FOUND if there is no such object.
 * - c_cfm_save_config(): 0 once everything that has changed since the last save is on the disk, in the
 *   file of the option "--state"; C_RESULT_SYSTEM_CALL if it cannot be written: the log says why, and the
 *   next save tries again. Without that option 0, and nothing outlasts the process.
 * - Events name the program that raised them as their source.
 */
#ifndef CPP2C_HOST_H
#define CPP2C_HOST_H

/**
 * Bits of c_loop_add_fd()'s `events`, of which its callback receives #C_LOOP_READ and #C_LOOP_WRITE.
 *
 * A mask without one of those two, or with both #C_LOOP_PERSIST and #C_LOOP_ONCE, is refused with
 * C_RESULT_PARAM, a descriptor that cannot be waited for, such as a regular file, with C_RESULT_SYSTEM_CALL.
 */
typedef enum c_loop_event {
  C_LOOP_READ = 0x02,    /**< data to read, end of data, or an error */
  C_LOOP_WRITE = 0x04,   /**< room to write, or an error */
  C_LOOP_PERSIST = 0x10, /**< keep watching; this is so without #C_LOOP_ONCE */
  C_LOOP_EDGE = 0x20,    /**< call on each change to ready, not for as long as it is ready */
  C_LOOP_ONCE = 0x100    /**< stop watching, just before the first call */
} c_loop_event;

/** A #c_cfm_callback's `operation`. For the first and the last, its `leaf` is "". */
typedef enum c_cfm_operation {
  C_CFM_ADDED = 1,   /**< the instance has come into being, with every leaf at its default */
  C_CFM_CHANGED = 2, /**< the leaf has another value than before */
  C_CFM_DELETED = 3  /**< the instance is gone */
} c_cfm_operation;

/**
 * Values of c_cfm_set_value()'s `option`, besides 0. They matter for an object that the configuration
 * declares "dynamic", whose instances come and go at run time.
 *
 * An instance that does not exist reads as its defaults. Writing it without #C_CFM_CREATE is refused with
 * C_RESULT_NOT_FOUND.
 */
typedef enum c_cfm_option {
  C_CFM_CREATE = 1, /**< create the leaf's instance if it does not exist, then write the leaf */
  C_CFM_DELETE = 2  /**< delete the leaf's instance with all its leaves; the value is not looked at */
} c_cfm_option;

/** c_log_record()'s `code`, as in syslog. A smaller one counts as 0, a larger one as #C_LOG_DEBUG. */
typedef enum c_log_level {
  C_LOG_CRITICAL = 2,
  C_LOG_ERROR = 3,
  C_LOG_WARNING = 4,
  C_LOG_NOTICE = 5,
  C_LOG_INFO = 6, /**< the least urgent that is shown by default */
  C_LOG_DEBUG = 7
} c_log_level;

#endif
