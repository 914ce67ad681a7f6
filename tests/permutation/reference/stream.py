"""The run's random stream and the shuffles of the permutation test, in
plain Python: the state recurrence in exact integers, the uniform and the
index of each swap rounded to float32."""
from float32 import f32

MODULUS = 2147483647


def generator_scale():
    scale = f32(2.0 ** -31)
    while float(scale) * 2147483648.0 >= 1.0:
        scale = f32(scale * f32(1.0 - 2.0 ** -24))
    return scale


class Stream:
    def __init__(self, hour, minute, second):
        seed = hour * 10000 + minute * 100 + second + 1
        self.state = seed if seed > 1 else 123457
        self.scale = float(generator_scale())

    def uniform(self):
        self.state = self.state * 16807 % MODULUS
        return f32(self.state * self.scale)

    def permutation(self, k):
        """A permutation of 1..k; an index one past the end leaves the
        position as it is."""
        order = list(range(1, k + 1))
        for i in range(k, 1, -1):
            j = int(f32(self.uniform() * f32(i)) + f32(1.0))
            if j <= k:
                order[i - 1], order[j - 1] = order[j - 1], order[i - 1]
        return order

    def shuffle(self, values):
        """PermValue(i) = values(PermOrder(i))."""
        if not values:
            return []
        return [values[p - 1] for p in self.permutation(len(values))]
