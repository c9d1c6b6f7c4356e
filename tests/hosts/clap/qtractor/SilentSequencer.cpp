// SPDX-License-Identifier: GPL-3.0-or-later
// Takes the place of the sequencer of a machine that has none, for a host that does not start without: it can
// be opened, nothing is connected to it, and all that it is given is gone. Only what asks the sequencer
// itself is here; the rest of its library stays the system's.

namespace {

constexpr int done = 0;
constexpr int notThere = -2;
constexpr int ownClient = 128;

char sequencer = 0;

}  // namespace

#define QUILLO_ANSWER(function, answer)                                                                      \
    int function() {                                                                                         \
        return answer;                                                                                       \
    }

extern "C" {

int snd_seq_open(void** handle) {
    *handle = &sequencer;
    return done;
}

QUILLO_ANSWER(snd_seq_alloc_queue, done)
QUILLO_ANSWER(snd_seq_client_id, ownClient)
QUILLO_ANSWER(snd_seq_close, done)
QUILLO_ANSWER(snd_seq_control_queue, done)
QUILLO_ANSWER(snd_seq_create_simple_port, done)
QUILLO_ANSWER(snd_seq_delete_simple_port, done)
QUILLO_ANSWER(snd_seq_drain_output, done)
QUILLO_ANSWER(snd_seq_drop_input, done)
QUILLO_ANSWER(snd_seq_drop_output, done)
QUILLO_ANSWER(snd_seq_event_input, notThere)
QUILLO_ANSWER(snd_seq_event_input_pending, done)
QUILLO_ANSWER(snd_seq_event_output, done)
QUILLO_ANSWER(snd_seq_event_output_direct, done)
QUILLO_ANSWER(snd_seq_free_event, done)
QUILLO_ANSWER(snd_seq_free_queue, done)
QUILLO_ANSWER(snd_seq_get_any_client_info, notThere)
QUILLO_ANSWER(snd_seq_get_any_port_info, notThere)
QUILLO_ANSWER(snd_seq_get_port_info, done)
QUILLO_ANSWER(snd_seq_get_queue_status, done)
QUILLO_ANSWER(snd_seq_get_queue_tempo, done)
QUILLO_ANSWER(snd_seq_poll_descriptors, done)
QUILLO_ANSWER(snd_seq_poll_descriptors_count, done)
QUILLO_ANSWER(snd_seq_query_next_client, notThere)
QUILLO_ANSWER(snd_seq_query_next_port, notThere)
QUILLO_ANSWER(snd_seq_query_port_subscribers, notThere)
QUILLO_ANSWER(snd_seq_remove_events, done)
QUILLO_ANSWER(snd_seq_set_client_name, done)
QUILLO_ANSWER(snd_seq_set_port_info, done)
QUILLO_ANSWER(snd_seq_set_queue_tempo, done)
QUILLO_ANSWER(snd_seq_set_queue_timer, done)
QUILLO_ANSWER(snd_seq_subscribe_port, done)
QUILLO_ANSWER(snd_seq_unsubscribe_port, done)
QUILLO_ANSWER(snd_timer_close, done)
QUILLO_ANSWER(snd_timer_info, notThere)
QUILLO_ANSWER(snd_timer_open, notThere)
QUILLO_ANSWER(snd_timer_query_close, done)
QUILLO_ANSWER(snd_timer_query_next_device, notThere)
QUILLO_ANSWER(snd_timer_query_open, notThere)

}  // extern "C"
