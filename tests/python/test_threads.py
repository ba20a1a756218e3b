"""Threads: each has its own root object; an object may be handed to another thread and used
there, also after the thread that made it has ended. `make tsan` runs this file under
ThreadSanitizer as well."""
import queue
import threading

import tessel


def test_a_root_handed_to_the_main_thread_outlives_its_thread():
    handed = queue.Queue()
    t = threading.Thread(target=lambda: handed.put((tessel.DRAW, tessel.sys_Global)))
    t.start()
    draw, its_global = handed.get()
    # The thread may still be ending, releasing its root and globals, while these calls run.
    for _ in range(200):
        r = draw.RECT(1, 2, 3, 4)
        assert tuple(r) == (1, 2, 3, 4)
    t.join()
    assert r.INFO() == "(1,2)-(3,5)"
    assert draw.RECT(5, 6, 7, 8).INFO() == "(5,6)-(11,13)"
    assert draw is not tessel.DRAW
    # A global object answers for the thread that calls it.
    assert its_global.DRAW is tessel.DRAW


def test_threads_use_their_own_roots_and_hand_objects_on():
    n = 8
    rounds = 100
    start = threading.Barrier(n)
    inbox = [queue.Queue() for _ in range(n)]
    roots, errors = [None] * n, []
    raised_on = [[] for _ in range(n)]  # per maker: the threads its rectangles moved on

    def worker(i):
        try:
            roots[i] = tessel.DRAW
            start.wait()
            for k in range(rounds):
                r = tessel.DRAW.RECT(k, i, 10, 10)
                r.connect("MOVED", lambda: raised_on[i].append(threading.get_ident()))
                inbox[(i + 1) % n].put(r)
                got = inbox[i].get()
                got.MOVEBY(1, 1)
                assert tuple(got) == (k + 1, (i - 1) % n + 1, 10, 10)
            # Whatever this thread still holds goes when the thread ends, on this thread.
        except BaseException as e:  # noqa: B036 (reported below)
            errors.append(e)

    threads = [threading.Thread(target=worker, args=(i,)) for i in range(n)]
    for t in threads:
        t.start()
    idents = {t.ident: i for i, t in enumerate(threads)}
    for t in threads:
        t.join()
    assert not errors
    assert len({id(r) for r in roots} | {id(tessel.DRAW)}) == n + 1
    for i in range(n):
        # Moved by the next thread, and the handler ran there.
        assert [idents[t] for t in raised_on[i]] == [(i + 1) % n] * rounds
