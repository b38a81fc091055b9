"""A WebSocket server on the websockets package that prints its port.

Messages that are commands get what they ask for; every other message comes back as it is.
"""
import asyncio

import websockets


async def pieces(*texts):
    for text in texts:
        yield text


async def obey(socket, message):
    if message == "two":
        await socket.send("first")
        await socket.send("second")
    elif message == "two and close":
        await socket.send("first")
        await socket.send("second")
        await socket.close(1000, "enough")
    elif message == "close":
        await socket.close(1001, "going away")
    elif message == "fragments":
        await socket.send(pieces("one ", "two ", "three"))
    elif message == "slow fragments":
        async def slow():
            for text in ("one ", "two ", "three"):
                yield text
                await asyncio.sleep(0.2)
        await socket.send(slow())
    elif message == "ping":
        answered = await socket.ping(b"are you there")
        await asyncio.wait_for(answered, 5)
        await socket.send("ponged")
    elif message == "silence":
        pass
    elif message == "who left":
        await socket.send(" ".join(f"{code}" for code in CLOSE_CODES))
    else:
        await socket.send(message)


CLOSE_CODES = []


async def serve_one(socket, path):
    try:
        async for message in socket:
            await obey(socket, message)
    except websockets.ConnectionClosed:
        pass
    CLOSE_CODES.append(socket.close_code)


async def main():
    async with websockets.serve(serve_one, "127.0.0.1", 0, max_size=None, ping_interval=None) as server:
        print(server.sockets[0].getsockname()[1], flush=True)
        await asyncio.Future()


asyncio.run(main())
