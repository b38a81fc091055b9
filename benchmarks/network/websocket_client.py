"""Echoes a message of SIZE bytes ROUNDS times over ws://127.0.0.1:PORT/ and prints the seconds of
each round: the peer of our own client.

usage: websocket_client.py PORT SIZE ROUNDS
"""
import asyncio
import sys
import time

import websockets


async def main():
    port, size, rounds = map(int, sys.argv[1:4])
    message = "m" * size
    async with websockets.connect(f"ws://127.0.0.1:{port}/", max_size=None, compression=None) as socket:
        for _ in range(rounds):
            start = time.perf_counter()
            await socket.send(message)
            if await socket.recv() != message:
                sys.exit("the echo differs")
            print(time.perf_counter() - start)


asyncio.run(main())
